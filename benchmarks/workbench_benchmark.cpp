// Excluding a point in the workbench, with all that is on the screen.
#include <benchmark/benchmark.h>

#include "samples.h"
#include "workbench/points_view.h"
#include "workbench/workbench.h"

namespace kv_tr::benchmarks {
namespace {

using workbench::Column;

/// A step, the fit, the strip, and the rows of a screen in the order of their residuals.
void ExcludePoint(benchmark::State& state, Type type, std::size_t count) {
    constexpr std::size_t kScreen = 40;
    workbench::Content content;
    for (ControlPoint& point : Points(count)) content.pairs.push_back({.point = std::move(point)});
    content.settings.type = type;
    workbench::Workbench bench;
    bench.Begin(std::move(content), {});
    workbench::PointsView view(bench.Project());
    view.Sort({Column::kResidual, true});
    for (auto _ : state) {
        bench.Toggle(count / 3);
        benchmark::DoNotOptimize(bench.Project().Strip());
        for (std::size_t row = 0; row < kScreen; ++row) {
            benchmark::DoNotOptimize(view.MarkOf(row));
            for (const Column column : view.ShownColumns())
                benchmark::DoNotOptimize(view.CellText(row, column));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

}  // namespace

void RegisterWorkbench() {
    using benchmark::RegisterBenchmark;
    for (const std::size_t count : {std::size_t{5000}, std::size_t{50000}}) {
        const std::string of = ", " + std::to_string(count) + " pairs/KV_Tr";
        RegisterBenchmark(("Exclude a point, Helmert" + of).c_str(), ExcludePoint, Type::kHelmert,
                          count);
        RegisterBenchmark(("Exclude a point, order 3" + of).c_str(), ExcludePoint,
                          Type::kPolynomial3, count);
    }
}

}  // namespace kv_tr::benchmarks
