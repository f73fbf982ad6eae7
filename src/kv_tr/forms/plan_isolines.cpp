// Lines along which a quantity is the same, over a rectangle of the plan.
#include "kv_tr/forms/plan_isolines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "kv_tr/text/round_number.h"

namespace kv_tr {
namespace {

constexpr std::size_t kCells = 48;
constexpr double kLevels = 8;
constexpr double kConstant = 1e-3;

struct Sample {
    Point place;
    double value = 0;
};

/// Where a level lies between two samples.
Point Crossing(const Sample& one, const Sample& other, double level) {
    const double part = (level - one.value) / (other.value - one.value);
    return {std::lerp(one.place.first, other.place.first, part),
            std::lerp(one.place.second, other.place.second, part)};
}

/// The lines of a level in a cell whose corners follow each other around it.
void AddCell(const std::array<Sample, 4>& corners, PlanIsolines::Level& level) {
    std::array<Point, 4> crossings;
    std::size_t count = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const Sample& one = corners[i];
        const Sample& other = corners[(i + 1) % 4];
        if ((one.value < level.value) != (other.value < level.value)) {
            crossings[count++] = Crossing(one, other, level.value);
        }
    }
    if (count == 2) level.segments.push_back({crossings[0], crossings[1]});
    if (count != 4) return;
    // A saddle: the mean of the corners tells which of them the lines cut off.
    double mean = 0;
    for (const Sample& corner : corners) mean += corner.value / 4;
    const bool cutsFirst = (mean < level.value) != (corners[0].value < level.value);
    level.segments.push_back({crossings[0], crossings[cutsFirst ? 3 : 1]});
    level.segments.push_back({crossings[2], crossings[cutsFirst ? 1 : 3]});
}

}  // namespace

PlanIsolines IsolinesOf(const PlanExtent& box, const std::function<double(Point)>& quantity) {
    constexpr std::size_t kSide = kCells + 1;
    std::vector<Sample> samples;
    samples.reserve(kSide * kSide);
    for (std::size_t row = 0; row < kSide; ++row) {
        for (std::size_t column = 0; column < kSide; ++column) {
            const Point place{std::lerp(box.least.first, box.greatest.first,
                                        static_cast<double>(column) / kCells),
                              std::lerp(box.least.second, box.greatest.second,
                                        static_cast<double>(row) / kCells)};
            samples.push_back({place, quantity(place)});
        }
    }
    std::vector<double> values;
    for (const Sample& sample : samples) {
        if (std::isfinite(sample.value)) values.push_back(sample.value);
    }
    PlanIsolines isolines;
    if (values.empty()) return isolines;
    const auto [least, greatest] = std::ranges::minmax(values);
    if (greatest - least < kConstant) {
        isolines.constant = std::midpoint(least, greatest);
        return isolines;
    }
    isolines.step = RoundAbove((greatest - least) / kLevels);
    const double first = std::ceil(least / isolines.step);
    for (int i = 0; (first + i) * isolines.step <= greatest && i <= kLevels; ++i) {
        PlanIsolines::Level level{(first + i) * isolines.step};
        for (std::size_t row = 0; row < kCells; ++row) {
            for (std::size_t column = 0; column < kCells; ++column) {
                const Sample* corner = &samples[row * kSide + column];
                const std::array corners{corner[0], corner[1], corner[kSide + 1], corner[kSide]};
                const bool isDefined = std::ranges::all_of(
                    corners, [](const Sample& sample) { return std::isfinite(sample.value); });
                if (isDefined) AddCell(corners, level);
            }
        }
        isolines.levels.push_back(std::move(level));
    }
    return isolines;
}

}  // namespace kv_tr
