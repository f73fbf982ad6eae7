// Runs all benchmarks and prints one table. A benchmark is named "work/who does it"; rows with
// the same work stand together, and the ratio is to the first of them.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "samples.h"

namespace {

struct Row {
    std::string work;
    std::string who;
    std::vector<double> seconds{};  // for one item, of each repetition
    double items = 0;               // in one run
};

/// With three digits, but never an exponent.
std::string Figure(double value) {
    char text[40];
    std::snprintf(text, sizeof text, value >= 100.0 ? "%.0f" : "%.3g", value);
    return text;
}

class Table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) continue;
            const std::string& name = run.run_name.function_name;
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", name.c_str(), run.error_message.c_str());
                continue;
            }
            if (rows_.empty() || rows_.back().work + "/" + rows_.back().who != name) {
                const auto slash = name.rfind('/');
                rows_.push_back({.work = name.substr(0, slash), .who = name.substr(slash + 1)});
                std::fprintf(stderr, "%s\n", name.c_str());
            }
            const double rate = run.counters.at("items_per_second").value;
            const bool wallClock = run.run_name.time_type == "manual_time";
            const double time = wallClock ? run.real_accumulated_time : run.cpu_accumulated_time;
            rows_.back().seconds.push_back(1.0 / rate);
            rows_.back().items = rate * time / static_cast<double>(run.iterations);
        }
    }

    /// The best repetition counts: whatever else the machine does only adds to it.
    void Finalize() override {
        std::puts("| Work | Who | Million a second | Spread | ms a run | Against the first |");
        std::puts("|---|---|---:|---:|---:|---:|");
        std::map<std::string, double> bests;
        for (Row& row : rows_) {
            std::ranges::sort(row.seconds);
            const double best = row.seconds.front();
            const double median = row.seconds[row.seconds.size() / 2];
            const auto [first, isFirst] = bests.emplace(row.work, best);
            std::printf("| %s | %s | %s | %.0f %% | %s | %s |\n", isFirst ? row.work.c_str() : "",
                        row.who.c_str(), Figure(1e-6 / best).c_str(), 100.0 * (median / best - 1.0),
                        Figure(1e3 * best * row.items).c_str(),
                        Figure(first->second / best).c_str());
        }
    }

private:
    std::vector<Row> rows_;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    kv_tr::benchmarks::RegisterEvaluation();
    kv_tr::benchmarks::RegisterFits();
    kv_tr::benchmarks::RegisterText();
    kv_tr::benchmarks::RegisterRasters();
    kv_tr::benchmarks::RegisterLayers();
    kv_tr::benchmarks::RegisterWorkbench();
    kv_tr::benchmarks::RegisterPlan();
    Table table;
    benchmark::RunSpecifiedBenchmarks(&table);
}
