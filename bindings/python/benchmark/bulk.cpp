// How long clsTrCalc::bTrXYArr takes for a million points, with new vectors for the images and with
// the same ones again: prints milliseconds, the best of many.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "kv_tr/published/clsTrCalc.h"

int main(int, char** arguments) {
    using Clock = std::chrono::steady_clock;
    kv_tr::clsTrCalc engine;
    engine.eTrType(static_cast<kv_tr::enuTR_TYPE>(std::atoi(arguments[1])));
    std::vector<double> first(1'000'000), second(first.size());
    for (std::size_t i = 0; i < first.size(); ++i) second[i] = first[i] = static_cast<double>(i);
    for (const bool again : {false, true}) {
        std::chrono::duration<double, std::milli> best(1e9);
        std::vector<double> firstOut, secondOut;
        for (int run = 0; run < std::atoi(arguments[2]); ++run) {
            if (!again) {
                firstOut = std::vector<double>();
                secondOut = std::vector<double>();
            }
            const auto start = Clock::now();
            engine.bTrXYArr(first, second, firstOut, secondOut);
            best = std::min<std::chrono::duration<double, std::milli>>(best, Clock::now() - start);
        }
        std::printf("%.3f ", best.count());
    }
}
