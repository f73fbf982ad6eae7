// Mapping arrays of points.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <utility>

#include "kv_tr/model/evaluate.h"
#include "kv_tr/model/inverse.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/eval_tr_prm.h"
#include "samples.h"

#ifdef KV_TR_HAS_PROJ
#include <proj.h>
#endif
#ifdef KV_TR_HAS_GDAL
#include "gdal_points.h"
#endif

namespace kv_tr::benchmarks {

std::string ProjText(const TR_PRM& record) {
    const auto [a, b] = CoefficientsOf(record);
    const auto number = [](double value) {
        char text[40];
        std::snprintf(text, sizeof text, "%.17g", value);
        return std::string(text);
    };
    if (record.eType < TR_POLI_1) {
        return "+proj=affine +xoff=" + number(a[0]) + " +s11=" + number(a[1]) +
               " +s12=" + number(a[2]) + " +yoff=" + number(b[0]) + " +s21=" + number(b[1]) +
               " +s22=" + number(b[2]);
    }
    constexpr std::size_t kOrder = 5;
    std::string u;
    std::string v;
    for (std::size_t outer = 0; outer <= kOrder; ++outer) {
        for (std::size_t inner = 0; inner + outer <= kOrder; ++inner) {
            const std::size_t degree = outer + inner;
            const std::size_t before = degree * (degree + 1) / 2 + 1;
            u += (u.empty() ? "" : ",") + number(a[before + outer]);
            v += (v.empty() ? "" : ",") + number(b[before + inner]);
        }
    }
    return "+proj=horner +deg=5 +range=1e9 +fwd_origin=" + number(a[0]) + "," + number(b[0]) +
           " +fwd_u=" + u + " +fwd_v=" + v;
}

namespace {

constexpr std::size_t kFromMemory = 4 << 20;  // 128 MB in four arrays
constexpr std::size_t kFromCache = 4096;

constexpr std::pair<InstructionSet, const char*> kSets[] = {
    {InstructionSet::kAvx512, "AVX-512"},
    {InstructionSet::kAvx2, "AVX2"},
    {InstructionSet::kBaseline, "baseline"}};

struct Arrays {
    explicit Arrays(std::size_t count)
        : first(count), second(count), firstOut(count), secondOut(count) {
        for (std::size_t i = 0; i < count; ++i) {
            const PlanePoint point = Point(i);
            first[i] = point.first;
            second[i] = point.second;
        }
    }
    std::vector<double> first, second, firstOut, secondOut;
};

void Count(benchmark::State& state, std::size_t points) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points));
}

void ToOtherArrays(benchmark::State& state, enuTR_TYPE type, InstructionSet set,
                   std::size_t points) {
    Arrays arrays(points);
    const Transformation transformation = TransformationOf(AlmostIdentity(type));
    for (auto _ : state) {
        ApplyWith(set, transformation, arrays.first, arrays.second, arrays.firstOut,
                  arrays.secondOut);
        benchmark::ClobberMemory();
    }
    Count(state, points);
}

void InPlace(benchmark::State& state, enuTR_TYPE type) {
    Arrays arrays(kFromMemory);
    const TR_PRM record = AlmostIdentity(type);
    for (auto _ : state) {
        EvalTrPrmArrays(record, arrays.first, arrays.second, arrays.first, arrays.second);
        benchmark::ClobberMemory();
    }
    Count(state, kFromMemory);
}

void AlternatingInPlace(benchmark::State& state, enuTR_TYPE type) {
    std::vector<double> pairs;
    for (std::size_t i = 0; i < kFromMemory; ++i) {
        pairs.insert(pairs.end(), {Point(i).first, Point(i).second});
    }
    const TR_PRM record = AlmostIdentity(type);
    for (auto _ : state) {
        EvalTrPrmPairs(record, pairs, pairs);
        benchmark::ClobberMemory();
    }
    Count(state, kFromMemory);
}

/// A polynomial of order 5 that bends by some metres at the ends of the area.
Transformation Bending() {
    Transformation bending = TransformationOf(AlmostIdentity(TR_POLI_5));
    for (std::size_t k = 4; k < bending.a.size(); ++k) {
        const double degree =
            std::floor((std::sqrt(8.0 * static_cast<double>(k) - 7.0) - 1.0) / 2.0);
        bending.a[k] = 5.0 * std::sin(static_cast<double>(k)) / std::pow(5e4, degree);
        bending.b[k] = 5.0 * std::cos(static_cast<double>(k)) / std::pow(5e4, degree);
    }
    return bending;
}

void Inverse(benchmark::State& state, InstructionSet set, std::size_t points) {
    Arrays arrays(points);
    const auto inverse = ExactInverse::Of(Bending());
    for (auto _ : state) {
        inverse->ApplyWith(set, arrays.first, arrays.second, arrays.firstOut, arrays.secondOut);
        benchmark::ClobberMemory();
    }
    Count(state, points);
}

void InverseOneByOne(benchmark::State& state) {
    Arrays arrays(kFromCache);
    const auto inverse = ExactInverse::Of(Bending());
    for (auto _ : state) {
        for (std::size_t i = 0; i < kFromCache; ++i) {
            const SourcePoint source = inverse->Apply({arrays.first[i], arrays.second[i]});
            arrays.firstOut[i] = source.point.first;
        }
        benchmark::ClobberMemory();
    }
    Count(state, kFromCache);
}

void Copy(benchmark::State& state) {
    Arrays arrays(kFromMemory);
    const std::size_t bytes = kFromMemory * sizeof(double);
    for (auto _ : state) {
        std::memcpy(arrays.firstOut.data(), arrays.first.data(), bytes);
        std::memcpy(arrays.secondOut.data(), arrays.second.data(), bytes);
        benchmark::ClobberMemory();
    }
    Count(state, kFromMemory);
}

#ifdef KV_TR_HAS_PROJ
void Proj(benchmark::State& state, enuTR_TYPE type) {
    Arrays arrays(kFromMemory);
    PJ* operation = proj_create(PJ_DEFAULT_CTX, ProjText(AlmostIdentity(type)).c_str());
    if (operation == nullptr) return state.SkipWithError("no such operation");
    for (auto _ : state) {
        proj_trans_generic(operation, PJ_FWD, arrays.first.data(), sizeof(double), kFromMemory,
                           arrays.second.data(), sizeof(double), kFromMemory, nullptr, 0, 0,
                           nullptr, 0, 0);
        benchmark::ClobberMemory();
    }
    proj_destroy(operation);
    Count(state, kFromMemory);
}
#endif

#ifdef KV_TR_HAS_GDAL
void Gdal(benchmark::State& state, int order) {
    auto pairs = Pairs(1000);
    for (typeXYs4Tr& pair : pairs) {
        pair.dXdest = pair.dXsour;
        pair.dYdest = pair.dYsour;
    }
    void* transformer = GdalPoints(pairs).Fit(order);
    if (transformer == nullptr) return state.SkipWithError("no fit");
    Arrays arrays(kFromMemory);
    std::vector<int> successes(kFromMemory);
    for (auto _ : state) {
        GDALGCPTransform(transformer, FALSE, kFromMemory, arrays.first.data(), arrays.second.data(),
                         nullptr, successes.data());
        benchmark::ClobberMemory();
    }
    GDALDestroyGCPTransformer(transformer);
    Count(state, kFromMemory);
}
#endif

void Register(const std::string& name, enuTR_TYPE type) {
    const auto in = [&](const std::string& where) { return name + ", " + where; };
    const auto widest = WidestInstructionSet();
    using benchmark::RegisterBenchmark;
    RegisterBenchmark(in("memory to memory/KV_Tr").c_str(), ToOtherArrays, type, widest,
                      kFromMemory);
    RegisterBenchmark(in("memory to memory/a plain copy").c_str(), Copy);
    RegisterBenchmark(in("in place/KV_Tr").c_str(), InPlace, type);
    RegisterBenchmark(in("in place/KV_Tr, alternating").c_str(), AlternatingInPlace, type);
#ifdef KV_TR_HAS_PROJ
    RegisterBenchmark(in("in place/PROJ").c_str(), Proj, type);
#endif
    for (const auto& [set, label] : kSets) {
        if (!IsAvailable(set)) continue;
        RegisterBenchmark(in(std::string("in cache/KV_Tr, ") + label).c_str(), ToOtherArrays, type,
                          set, kFromCache);
    }
}

}  // namespace

void RegisterEvaluation() {
    Register("Affine", TR_AFFIN);
    benchmark::RegisterBenchmark("Order 3, in place/KV_Tr", InPlace, TR_POLI_3);
#ifdef KV_TR_HAS_GDAL
    benchmark::RegisterBenchmark("Order 3, in place/GDAL", Gdal, 3);
#endif
    Register("Order 5", TR_POLI_5);
    benchmark::RegisterBenchmark("Order 5 inverted, from memory/KV_Tr", Inverse,
                                 WidestInstructionSet(), kFromMemory);
    for (const auto& [set, label] : kSets) {
        if (!IsAvailable(set)) continue;
        benchmark::RegisterBenchmark(
            (std::string("Order 5 inverted, in cache/KV_Tr, ") + label).c_str(), Inverse, set,
            kFromCache);
    }
    benchmark::RegisterBenchmark("Order 5 inverted, in cache/KV_Tr, point by point",
                                 InverseOneByOne);
}

}  // namespace kv_tr::benchmarks
