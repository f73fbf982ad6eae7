// Text: control-point files, and files of points through whole programs.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "kv_tr/files/control_point_file.h"
#include "kv_tr/model/national.h"
#include "kv_tr/published/number_format.h"
#include "samples.h"

namespace kv_tr::benchmarks {
namespace {

constexpr std::size_t kPairLines = 200000;
constexpr std::size_t kPointLines = 1000000;

/// A file that exists while the program runs.
class SampleFile {
public:
    SampleFile(const std::string& name, const std::string& text)
        : path_((std::filesystem::temp_directory_path() / name).string()) {
        std::ofstream(path_, std::ios::binary) << text;
    }
    ~SampleFile() { std::remove(path_.c_str()); }
    SampleFile(const SampleFile&) = delete;
    SampleFile& operator=(const SampleFile&) = delete;

    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

void ReadPairs(benchmark::State& state) {
    const SampleFile file("kv_tr_benchmark.dat", ListControlPoints(Points(kPairLines)));
    for (auto _ : state) benchmark::DoNotOptimize(ReadControlPointFile(file.Path()));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPairLines));
}

void WritePairs(benchmark::State& state) {
    const auto points = Points(kPairLines);
    for (auto _ : state) benchmark::DoNotOptimize(ListControlPoints(points));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPairLines));
}

/// Both programs read columns of numbers; cct wants a height and a time as well.
std::string PointLines() {
    std::string text;
    for (std::size_t i = 0; i < kPointLines; ++i) {
        const PlanePoint point = Point(i);
        AppendFixed(text, point.first - 600000.0, 3);
        text += ' ';
        AppendFixed(text, point.second - 200000.0, 3);
        text += " 0 0\n";
    }
    return text;
}

/// A command that reads the file of points; its time is the wall clock's.
void Program(benchmark::State& state, const std::string& command) {
    const SampleFile file("kv_tr_benchmark.txt", PointLines());
    const std::string line = command + " " + file.Path() + " >/dev/null";
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        if (std::system(line.c_str()) != 0) return state.SkipWithError("the program failed");
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(taken.count());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPointLines));
}

void RegisterProgram(const char* name, const std::string& command) {
    benchmark::RegisterBenchmark(name, Program, command)->UseManualTime();
}

}  // namespace

void RegisterText() {
    using benchmark::RegisterBenchmark;
    RegisterBenchmark("Lines of a control-point file/KV_Tr, reading", ReadPairs);
    RegisterBenchmark("Lines of a control-point file/KV_Tr, writing", WritePairs);
    const std::string ours = KV_TR_PROGRAM " transform --no-id --national STG_EOV_10e";
    RegisterProgram("Lines of points through a program/kv_tr", ours);
    RegisterProgram("Lines of points through a program/kv_tr, one processor",
                    "taskset -c 0 " + ours);
#ifdef KV_TR_CCT
    RegisterProgram(
        "Lines of points through a program/cct",
        KV_TR_CCT " -d 3 " + ProjText(RecordOf(*NationalTransformation(Type::kStgToEov10e))));
#endif
}

}  // namespace kv_tr::benchmarks
