// The plan of control points on the screen, where the windows are built. A run is one frame.
#include <benchmark/benchmark.h>

#include "samples.h"

#ifdef KV_TR_QT

#include <QApplication>
#include <QImage>

#include "kv_tr/qt/plan_widget.h"

namespace kv_tr::benchmarks {
namespace {

constexpr std::size_t kPairs = 50000;

/// Residuals of some decimetres; of a hundred pairs one is suspect, one over the limit and one
/// excluded.
PlanData Data() {
    PlanData data;
    for (const ControlPoint& point : Points(kPairs)) {
        const std::size_t i = data.pairs.size();
        PlanPair pair{.place = point.destination,
                      .residual = {point.destination.first - point.source.first,
                                   point.destination.second - point.source.second},
                      .isUsed = i % 100 != 3,
                      .id = point.id};
        if (i % 100 == 41) pair.standing = PlanStanding::kSuspect;
        if (i % 100 == 77) pair.standing = PlanStanding::kOverLimit;
        data.pairs.push_back(std::move(pair));
    }
    return data;
}

/// A widget that is painted into an image.
class Screen {
public:
    Screen() : image_(1400, 900, QImage::Format_ARGB32_Premultiplied) {
        widget_.resize(image_.size());
        widget_.SetOptions({.showsGrid = true});
        widget_.SetData(Data());
    }

    PlanWidget& Widget() { return widget_; }
    void Paint() { widget_.render(&image_); }

private:
    PlanWidget widget_;
    QImage image_;
};

/// Ten steps nearer and ten steps back, again and again.
void Zoom(benchmark::State& state) {
    Screen screen;
    int step = 0;
    for (auto _ : state) {
        screen.Widget().Zoom(step++ % 20 < 10 ? 1.25 : 0.8);
        screen.Paint();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPairs));
}

/// To and fro, with most pairs in view.
void Pan(benchmark::State& state) {
    Screen screen;
    screen.Widget().Zoom(1.25);
    int step = 0;
    for (auto _ : state) {
        const double by = step++ % 20 < 10 ? 17 : -17;
        screen.Widget().Move(by, by / 3);
        screen.Paint();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPairs));
}

/// New data, as they come after a pair was excluded and the rest fitted again.
void ExcludeInPlan(benchmark::State& state) {
    Screen screen;
    PlanData data = Data();
    std::size_t pair = 0;
    for (auto _ : state) {
        state.PauseTiming();
        bool& isUsed = data.pairs[pair++ % kPairs].isUsed;
        isUsed = !isUsed;
        PlanData copy = data;
        state.ResumeTiming();
        screen.Widget().SetData(std::move(copy));
        screen.Paint();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPairs));
}

}  // namespace

void RegisterPlan() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "kv_tr_benchmarks";
    static char* argv[] = {name, nullptr};
    static const QApplication application(argc, argv);
    benchmark::RegisterBenchmark("Pairs of a plan, zoomed/KV_Tr", Zoom);
    benchmark::RegisterBenchmark("Pairs of a plan, moved/KV_Tr", Pan);
    benchmark::RegisterBenchmark("Pairs of a plan, one excluded/KV_Tr", ExcludeInPlan);
}

}  // namespace kv_tr::benchmarks

#else

namespace kv_tr::benchmarks {

void RegisterPlan() {}

}  // namespace kv_tr::benchmarks

#endif
