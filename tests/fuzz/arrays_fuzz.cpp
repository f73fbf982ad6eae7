// Arrays of points through transformations and their exact inverses against the points alone, for
// every instruction set, alignment and length, in place too.
#include <vector>

#include "fuzz/fuzz.h"
#include "kv_tr/model/inverse.h"

namespace kv_tr::test {
namespace {

constexpr InstructionSet kSets[] = {InstructionSet::kBaseline, InstructionSet::kAvx2,
                                    InstructionSet::kAvx512};

Transformation AnyTransformation(Input& input) {
    Transformation t{.type = static_cast<Type>(input.Below(41) - 6)};
    const bool tame = input.Byte() % 4 != 0;  // close to the identity, so that it has an inverse
    for (auto* series : {&t.a, &t.b}) {
        double size = 1;
        for (std::size_t k = 0; k < series->size(); ++k) {
            const double number = input.Coordinate();
            if (k == 3 || k == 6 || k == 10 || k == 15) size *= 1e-3;
            (*series)[k] = tame ? (k < 3 ? (*series)[k] : 0) + number * 1e-7 * size : number;
        }
    }
    return t;
}

/// Room for points at an address that is not aligned.
struct Room {
    Room(std::size_t count, std::size_t offset) : offset(offset), values(count + offset, 42.0) {}
    std::span<double> All() { return std::span(values).subspan(offset); }
    std::size_t offset;
    std::vector<double> values;
};

void CheckForward(const Transformation& t, const std::vector<Point>& points, Input& input) {
    const std::size_t count = points.size();
    for (const InstructionSet set : kSets) {
        if (!IsAvailable(set)) continue;
        Room first(count, input.Byte() % 8), second(count, input.Byte() % 8);
        Room firstOut(count, input.Byte() % 8), secondOut(count, input.Byte() % 8);
        Room pairs(2 * count, input.Byte() % 8), pairsOut(2 * count, input.Byte() % 8);
        for (std::size_t i = 0; i < count; ++i) {
            first.All()[i] = pairs.All()[2 * i] = points[i].first;
            second.All()[i] = pairs.All()[2 * i + 1] = points[i].second;
        }
        ApplyWith(set, t, first.All(), second.All(), firstOut.All(), secondOut.All());
        ApplyWith(set, t, first.All(), second.All(), first.All(), second.All());
        ApplyToPairsWith(set, t, pairs.All(), pairsOut.All());
        ApplyToPairsWith(set, t, pairs.All(), pairs.All());
        for (std::size_t i = 0; i < count; ++i) {
            const Point image = t.Apply(points[i]);
            Require(Same(image, {firstOut.All()[i], secondOut.All()[i]}), "arrays are as points");
            Require(Same(image, {first.All()[i], second.All()[i]}), "arrays in place too");
            for (Room* room : {&pairs, &pairsOut})
                Require(Same(image, {room->All()[2 * i], room->All()[2 * i + 1]}), "pairs too");
        }
    }
}

void CheckInverse(const ExactInverse& inverse, const std::vector<Point>& points) {
    const std::size_t count = points.size();
    for (const InstructionSet set : kSets) {
        if (!IsAvailable(set)) continue;
        std::vector<double> pairs;
        for (const Point& point : points) pairs.insert(pairs.end(), {point.first, point.second});
        std::vector<NoSource> troubles(count);
        const std::size_t lost = inverse.ApplyToPairsWith(set, pairs, pairs, troubles);
        std::size_t without = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const SourcePoint source = inverse.Apply(points[i]);
            Require(Same(source.point, {pairs[2 * i], pairs[2 * i + 1]}), "inverses are as points");
            Require(source.trouble == troubles[i], "they say the same reason");
            Require(source.Found() == std::isfinite(source.point.first), "no source, no number");
            without += source.Found() ? 0 : 1;
        }
        Require(without == lost, "the lost points are counted");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const Transformation t = AnyTransformation(input);
    std::vector<Point> points(static_cast<std::size_t>(input.Below(20)));
    for (Point& point : points) point = input.AnyPoint();
    CheckForward(t, points, input);
    if (const auto inverse = ExactInverse::Of(t)) CheckInverse(*inverse, points);
    return 0;
}

}  // namespace kv_tr::test
