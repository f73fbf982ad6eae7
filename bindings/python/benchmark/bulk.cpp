// How long clsTrCalc::bTrXYArr takes for a million points: prints milliseconds, the best of many.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "engine/clsTrCalc.h"

int main(int, char** arguments) {
    using Clock = std::chrono::steady_clock;
    kv_tr::clsTrCalc engine;
    engine.eTrType(static_cast<kv_tr::enuTR_TYPE>(std::atoi(arguments[1])));
    std::vector<double> first(1'000'000), second(first.size());
    for (std::size_t i = 0; i < first.size(); ++i) second[i] = first[i] = static_cast<double>(i);
    std::chrono::duration<double, std::milli> best(1e9);
    for (int run = 0; run < std::atoi(arguments[2]); ++run) {
        std::vector<double> firstOut, secondOut;
        const auto start = Clock::now();
        engine.bTrXYArr(first, second, firstOut, secondOut);
        best = std::min<std::chrono::duration<double, std::milli>>(best, Clock::now() - start);
    }
    std::printf("%.3f\n", best.count());
}
