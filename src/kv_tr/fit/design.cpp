// The design of a model in the frame of its points.
#include "kv_tr/fit/design.h"

#include <algorithm>
#include <cmath>

#include "kv_tr/model/elementary.h"

namespace kv_tr {

Linearisation LinearisationAt(const Transformation& transformation) {
    const auto& [type, a, b] = transformation;
    if (type == Type::kHelmert3) return {std::atan2(b[1] - a[2], a[1] + b[2]), 1.0, 1.0};
    // The columns of the matrix are scaleFirst (c, s) and scaleSecond (-s, c); either scale may be
    // negative, and the longer column tells the rotation best.
    const double first = Hypotenuse(a[1], b[1]);
    const double second = Hypotenuse(a[2], b[2]);
    const double rotation = first >= second ? std::atan2(b[1], a[1]) : std::atan2(-a[2], b[2]);
    const double s = std::sin(rotation);
    const double c = std::cos(rotation);
    return {rotation, c * a[1] + s * b[1], c * b[2] - s * a[2]};
}

Design::Design(Type model, const Frame& frame, const Linearisation& at)
    : model_(model),
      frame_(frame),
      columns_(
          static_cast<std::size_t>(SharesUnknowns(model) ? UnknownsOf(model) : TermCount(model))),
      sine_(std::sin(at.rotation)),
      cosine_(std::cos(at.rotation)),
      scaleFirst_(at.scaleFirst),
      scaleSecond_(at.scaleSecond) {}

void Design::FillTerms(const Column& p, const Column& q, Block& block) const {
    const auto multiply = [&block](std::size_t next, std::size_t earlier, const Column& by) {
        for (std::size_t i = 0; i < block.rows; ++i) {
            block.column[next][i] = block.column[earlier][i] * by[i];
        }
    };
    block.column[0].fill(1.0);
    if (model_ == Type::kBilinear) {
        multiply(1, 0, p);
        multiply(2, 0, q);
        return multiply(3, 1, q);
    }
    std::size_t before = 0;  // where the degree before begins
    std::size_t next = 1;
    for (std::size_t degree = 1; next < columns_; before += degree++) {
        multiply(next++, before, p);
        for (std::size_t i = 0; i < degree; ++i) multiply(next++, before + i, q);
    }
}

void Design::FillShared(const Column& p, const Column& q, std::size_t coordinate,
                        Block& block) const {
    const bool first = coordinate == 0;
    const auto combine = [&](std::size_t column, double byP, double byQ) {
        for (std::size_t i = 0; i < block.rows; ++i) {
            block.column[column][i] = byP * p[i] + byQ * q[i];
        }
    };
    const double s = sine_;
    const double c = cosine_;
    block.column[coordinate].fill(1.0);
    block.column[1 - coordinate].fill(0.0);
    switch (model_) {
        case Type::kHelmert3: first ? combine(2, -s, -c) : combine(2, c, -s); break;
        case Type::kAffine5:
            combine(2, first ? c : s, 0.0);
            combine(3, 0.0, first ? -s : c);
            first ? combine(4, -scaleFirst_ * s, -scaleSecond_ * c)
                  : combine(4, scaleFirst_ * c, -scaleSecond_ * s);
            break;
        default:
            first ? combine(2, 1.0, 0.0) : combine(2, 0.0, 1.0);
            first ? combine(3, 0.0, -1.0) : combine(3, 1.0, 0.0);
            break;
    }
}

void Design::Fill(std::span<const Point> inFrame, std::size_t coordinate, Block& block) const {
    Column p{};
    Column q{};
    for (std::size_t i = 0; i < inFrame.size(); ++i) {
        p[i] = inFrame[i].first;
        q[i] = inFrame[i].second;
    }
    block.rows = (inFrame.size() + 7) / 8 * 8;
    SharesUnknowns(model_) ? FillShared(p, q, coordinate, block) : FillTerms(p, q, block);
}

TriangularFactor Design::Factor(std::span<const Point> inFrame, std::span<const Point> right,
                                std::span<const double> rootWeights) const {
    constexpr std::size_t kRows = OrthogonalReduction::kRows;
    const std::size_t sides = SharesUnknowns(model_) ? 1 : 2;
    OrthogonalReduction reduction(columns_, sides);
    Block block;
    for (std::size_t begin = 0; begin < inFrame.size(); begin += kRows) {
        const std::size_t count = std::min(kRows, inFrame.size() - begin);
        for (std::size_t coordinate = 0; coordinate < RowsPerPoint(); ++coordinate) {
            Fill(inFrame.subspan(begin, count), coordinate, block);
            for (std::size_t side = 0; side < sides; ++side) {
                Column& column = block.column[columns_ + side];
                column.fill(0.0);
                for (std::size_t i = 0; i < count; ++i) {
                    const Point value = right[begin + i];
                    column[i] = coordinate + side == 0 ? value.first : value.second;
                }
            }
            for (std::size_t k = 0; k < columns_ && count < kRows; ++k) {
                std::fill(block.column[k].begin() + static_cast<std::ptrdiff_t>(count),
                          block.column[k].end(), 0.0);
            }
            for (std::size_t k = 0; k < columns_ + sides && !rootWeights.empty(); ++k) {
                for (std::size_t i = 0; i < count; ++i) {
                    block.column[k][i] *= rootWeights[begin + i];
                }
            }
            reduction.Add(block);
        }
    }
    return {reduction, inFrame.size() * RowsPerPoint()};
}

Transformation Design::Change(const TriangularFactor& factor) const {
    return SharesUnknowns(model_) ? Change(factor.Solve(0), {})
                                  : Change(factor.Solve(0), factor.Solve(1));
}

Transformation Design::Change(std::span<const double> unknowns,
                              std::span<const double> ofSecond) const {
    Transformation change;
    change.type = std::max(model_, Type::kPolynomial1);
    change.a = {};
    change.b = {};
    if (!SharesUnknowns(model_)) {
        std::ranges::copy(unknowns, change.a.begin() + 1);
        std::ranges::copy(ofSecond, change.b.begin() + 1);
        return change;
    }
    // The rows are linear in p and q, so that three points tell all.
    constexpr std::array<Point, 3> kPoints{{{0, 0}, {1, 0}, {0, 1}}};
    Block block;
    for (const std::size_t coordinate : {std::size_t{0}, std::size_t{1}}) {
        Fill(kPoints, coordinate, block);
        auto& series = coordinate == 0 ? change.a : change.b;
        for (std::size_t k = 0; k < columns_; ++k) {
            const auto& column = block.column[k];
            series[1] += unknowns[k] * column[0];
            series[2] += unknowns[k] * (column[1] - column[0]);
            series[3] += unknowns[k] * (column[2] - column[0]);
        }
    }
    return change;
}

double Design::PointCofactors::Greatest() const {
    return 0.5 * (first + second + Hypotenuse(first - second, 2.0 * mixed));
}

std::vector<Design::PointCofactors> Design::CofactorsAt(const TriangularFactor& factor,
                                                        std::span<const Point> inFrame) const {
    constexpr std::size_t kRows = OrthogonalReduction::kRows;
    const bool shared = SharesUnknowns(model_);
    std::vector<PointCofactors> cofactors;
    cofactors.reserve(inFrame.size());
    Block rows;
    Block whitened[2];
    for (std::size_t begin = 0; begin < inFrame.size(); begin += kRows) {
        const auto points = inFrame.subspan(begin, std::min(kRows, inFrame.size() - begin));
        for (std::size_t coordinate = 0; coordinate < RowsPerPoint(); ++coordinate) {
            Fill(points, coordinate, rows);
            factor.Whiten(rows, whitened[coordinate]);
        }
        Column first{};
        Column mixed{};
        Column second{};
        const auto add = [&factor](Column& sums, const Block& a, const Block& b) {
            for (std::size_t k = 0; k < factor.Rank(); ++k) {
                for (std::size_t i = 0; i < a.rows; ++i) {
                    sums[i] += a.column[k][i] * b.column[k][i];
                }
            }
        };
        add(first, whitened[0], whitened[0]);
        if (shared) {
            add(mixed, whitened[0], whitened[1]);
            add(second, whitened[1], whitened[1]);
        }
        for (std::size_t i = 0; i < points.size(); ++i) {
            cofactors.push_back({first[i], mixed[i], shared ? second[i] : first[i]});
        }
    }
    return cofactors;
}

std::vector<Point> Into(const Frame& frame, std::span<const Point> points) {
    std::vector<Point> inFrame;
    inFrame.reserve(points.size());
    for (const Point& point : points) inFrame.push_back(frame.Into(point));
    return inFrame;
}

std::vector<Point> ImagesOf(const Transformation& transformation, std::span<const Point> points) {
    std::vector<Point> images;
    images.reserve(points.size());
    std::array<double, 512> coordinates;  // a block of points at a time
    while (!points.empty()) {
        const auto block = points.first(std::min(points.size(), coordinates.size() / 2));
        points = points.subspan(block.size());
        const auto used = std::span(coordinates).first(2 * block.size());
        for (std::size_t i = 0; i < block.size(); ++i) {
            used[2 * i] = block[i].first;
            used[2 * i + 1] = block[i].second;
        }
        transformation.ApplyToPairs(used, used);
        for (std::size_t i = 0; i < block.size(); ++i) {
            images.push_back({used[2 * i], used[2 * i + 1]});
        }
    }
    return images;
}

}  // namespace kv_tr
