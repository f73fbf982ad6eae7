// Fitting control points.
#include <benchmark/benchmark.h>

#include <string>

#include "kv_tr/analysis/assessment.h"
#include "kv_tr/fit/fit.h"
#include "kv_tr/published/clsTrCalc.h"
#include "kv_tr/published/pairs.h"
#include "samples.h"

#ifdef KV_TR_HAS_GDAL
#include "gdal_points.h"
#endif

namespace kv_tr::benchmarks {
namespace {

constexpr std::size_t kMany = 32767;

void Fit(benchmark::State& state, enuTR_TYPE type, std::size_t count) {
    clsTrCalc engine;
    engine.AddXY4Tr(Pairs(count), false);
    engine.eTrType(type);
    for (auto _ : state) engine.DoCalcTr();
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

void ResidualsAndFigures(benchmark::State& state, enuTR_TYPE type) {
    const auto points = Points(kMany);
    const Transformation transformation = TransformationOf(AlmostIdentity(type));
    for (auto _ : state) {
        benchmark::DoNotOptimize(StatisticsOf(points, ResidualsOf(points, transformation)));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kMany));
}

void Check(benchmark::State& state, Type type, std::size_t count) {
    const auto points = Points(count);
    const FitResult fit = kv_tr::Fit(points, type);
    for (auto _ : state) {
        benchmark::DoNotOptimize(CheckFit(points, fit.transformation, fit.residuals));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

void AssessAll(benchmark::State& state, Type type, std::size_t count) {
    const auto points = Points(count);
    for (auto _ : state) benchmark::DoNotOptimize(Assess(points, type));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

#ifdef KV_TR_HAS_GDAL
void GdalFit(benchmark::State& state, int order) {
    const GdalPoints points(Pairs(kMany));
    for (auto _ : state) GDALDestroyGCPTransformer(points.Fit(order));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kMany));
}
#endif

}  // namespace

void RegisterFits() {
    using benchmark::RegisterBenchmark;
    // Each fit is checked.
    RegisterBenchmark("Fit order 5 to 60 pairs/KV_Tr", Fit, TR_POLI_5, 60);
    RegisterBenchmark("Fit order 5 to 1,000 pairs/KV_Tr", Fit, TR_POLI_5, 1000);
    RegisterBenchmark("Fit order 5 to 32,767 pairs/KV_Tr", Fit, TR_POLI_5, kMany);
    RegisterBenchmark("Fit order 3 to 32,767 pairs/KV_Tr", Fit, TR_POLI_3, kMany);
#ifdef KV_TR_HAS_GDAL
    RegisterBenchmark("Fit order 3 to 32,767 pairs/GDAL, both directions", GdalFit, 3);
#endif
    RegisterBenchmark("Fit Helmert to 32,767 pairs/KV_Tr", Fit, TR_HELMERT, kMany);
    for (const std::size_t count : {std::size_t{60}, std::size_t{1000}, kMany}) {
        const std::string of = ", order 5, " + std::to_string(count) + " pairs/KV_Tr";
        RegisterBenchmark(("Check of a fit" + of).c_str(), Check, Type::kPolynomial5, count);
        RegisterBenchmark(("All statistics" + of).c_str(), AssessAll, Type::kPolynomial5, count);
    }
    RegisterBenchmark("Residuals and figures, order 5/KV_Tr", ResidualsAndFigures, TR_POLI_5);
}

}  // namespace kv_tr::benchmarks
