// Hatches of a drawing after a transformation: their edges, patterns and seeds.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "kv_tr/interchange/dxf_polyline.h"

namespace kv_tr::dxf {
namespace {

using std::numbers::pi;
constexpr std::int64_t kIsPolyline = 2;  // bit of group 92
enum EdgeType : std::int64_t { kLine = 1, kArc = 2, kEllipse = 3, kSpline = 4 };

/// Goes through the groups of a hatch, which mean something by their order only, and leaves those
/// of the image behind.
class Hatch {
public:
    Hatch(Record& record, const Work& work, int facing)
        : record_(record),
          map_(work.Own(facing)),
          tolerance_(work.tolerance),
          around_(work, facing, FirstPlace()) {}

    void Rewrite();
    Surroundings& Around() { return around_; }
    bool HasPolylines() const { return flattened_; }

private:
    /// The place of the first edge: the first one after the number of paths.
    Point FirstPlace();
    Tag* Peek() { return at_ < record_.tags.size() ? &record_.tags[at_] : nullptr; }
    bool IsNext(int code) { return at_ < record_.tags.size() && record_.tags[at_].code == code; }
    /// Takes groups as they are until one with the code, and that one too; a Trouble without one.
    Tag& PassTo(int code);
    void Pass() { made_.push_back(record_.tags[at_++]); }
    void PassPlaces(int code, std::int64_t count);
    void PassVectors(int code);

    void PolylinePath();
    void Edges();
    void Arc(bool isEllipse);
    /// The groups of an arc or ellipse up to the one that tells its direction.
    void FlattenedArc(bool isEllipse);
    void TurnedArc();
    void SplineEdge();
    bool HasFit();
    void FlattenedSpline();
    void AddLines(Point start, const std::vector<Step>& steps);
    void Pattern();

    Record& record_;
    const PlaneMap& map_;
    double tolerance_;
    std::size_t at_ = 0;
    std::vector<Tag> made_{};
    std::int64_t edges_ = 0;  // of the path, as they are made
    bool flattened_ = false;
    Surroundings around_;
};

[[noreturn]] void Missing(const Tag& after) {
    throw Trouble{{.kind = DrawingProblem::Kind::kMissingCoordinate, .line = after.line}};
}

Point Hatch::FirstPlace() {
    bool within = false;
    for (std::size_t i = 0; i < record_.tags.size(); ++i) {
        within = within || record_.tags[i].code == 91;
        if (within && record_.tags[i].code == 10) return record_.At(i).Place();
    }
    return {};
}

Tag& Hatch::PassTo(int code) {
    while (Peek() != nullptr && !IsNext(code)) {
        if (Peek()->scope == Scope::kExtended) break;
        Pass();
    }
    if (!IsNext(code)) Missing(record_.tags[std::min(at_, record_.tags.size() - 1)]);
    Pass();
    return made_.back();
}

void Hatch::PassPlaces(int code, std::int64_t count) {
    for (; count > 0; --count) {
        Tag& x = PassTo(code);
        const double first = x.Number();
        const auto index = made_.size() - 1;
        Tag& y = PassTo(code + 10);
        const Point image = map_.At({first, y.Number()});
        y.Set(image.second);
        made_[index].Set(image.first);
    }
}

void Hatch::PassVectors(int code) {
    const double first = PassTo(code).Number();
    const auto index = made_.size() - 1;
    Tag& y = PassTo(code + 10);
    const Point image = Image(around_.SlopeOfVectors(), {first, y.Number()});
    y.Set(image.second);
    made_[index].Set(image.first);
}

void Hatch::PolylinePath() {
    const bool hasBulges = PassTo(72).Integer() != 0;
    const auto bulgeFlag = made_.size() - 1;
    Outline outline{.closed = PassTo(73).Integer() != 0};
    const auto count = PassTo(93).Integer();
    const auto counter = made_.size() - 1;
    if (!hasBulges) return PassPlaces(10, count);
    const auto begin = made_.size();
    std::vector<std::pair<std::size_t, std::size_t>> places;  // in made_, of each x and y
    for (std::int64_t i = 0; i < count; ++i) {
        Vertex vertex;
        vertex.at.first = PassTo(10).Number();
        const auto x = made_.size() - 1;
        vertex.at.second = PassTo(20).Number();
        places.emplace_back(x, made_.size() - 1);
        if (IsNext(42)) {
            Pass();
            vertex.bulge = made_.back().Number();
        }
        outline.vertices.push_back(vertex);
    }
    if (outline.HasBulges() && !map_.IsSimilar()) {
        outline = Flattened(outline, map_, tolerance_);
        made_.resize(begin);
        for (const Vertex& vertex : outline.vertices) {
            made_.push_back(NewTag(10, vertex.at.first));
            made_.push_back(NewTag(20, vertex.at.second));
        }
        made_[bulgeFlag].SetInteger(0);
        made_[counter].SetInteger(static_cast<std::int64_t>(outline.vertices.size()));
        flattened_ = true;
        return;
    }
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto& [x, y] = places[i];
        const Vertex& vertex = outline.vertices[i];
        const Point image = map_.At(vertex.at);
        made_[x].Set(image.first);
        made_[y].Set(image.second);
        if (vertex.bulge != 0 && around_.SlopeOfVectors().Determinant() < 0) {
            made_[y + 1].Set(-vertex.bulge);
        }
    }
}

void Hatch::AddLines(Point start, const std::vector<Step>& steps) {
    for (const Step& step : steps) {
        made_.push_back(NewInteger(72, kLine));
        made_.push_back(NewTag(10, start.first));
        made_.push_back(NewTag(20, start.second));
        made_.push_back(NewTag(11, step.image.first));
        made_.push_back(NewTag(21, step.image.second));
        start = step.image;
    }
    edges_ += static_cast<std::int64_t>(steps.size());
    flattened_ = true;
}

void Hatch::FlattenedArc(bool isEllipse) {
    const auto begin = made_.size() - 1;  // the type of the edge
    Ellipse arc;
    arc.centre.first = PassTo(10).Number();
    arc.centre.second = PassTo(20).Number();
    if (isEllipse) {
        arc.major.first = PassTo(11).Number();
        arc.major.second = PassTo(21).Number();
        arc.ratio = PassTo(40).Number();
    } else {
        arc.major = {PassTo(40).Number(), 0};
    }
    arc.start = PassTo(50).Number() * pi / 180;
    arc.end = PassTo(51).Number() * pi / 180;
    const bool againstClock = PassTo(73).Integer() != 0;
    if (isEllipse) {
        // Angles between the axis and the radius; the whole turns of both stay.
        const auto toParameter = [&arc](double angle) {
            const double turns = std::round(angle / (2 * pi)) * 2 * pi;
            const double rest = angle - turns;
            return turns + std::atan2(std::sin(rest), arc.ratio * std::cos(rest));
        };
        arc.start = toParameter(arc.start);
        arc.end = toParameter(arc.end);
    }
    if (!againstClock) {  // the angles are counted with the clock too
        arc.start = -arc.start;
        arc.end = -arc.end;
    }
    const auto image = [&](double t) { return map_.At(arc.At(t)); };
    made_.resize(begin);
    AddLines(image(arc.start), Flattened(image, arc.start, arc.end, tolerance_));
}

void Hatch::TurnedArc() {
    ++edges_;
    PassPlaces(10, 1);
    Tag& radius = PassTo(40);
    const Derivative& slope = around_.Slope();
    radius.Set(MeanScale(slope) * radius.Number());
    const double start = PassTo(50).Number();
    const auto index = made_.size() - 1;
    Tag& end = PassTo(51);
    const double span = end.Number() - start;
    const auto endIndex = made_.size() - 1;
    Tag& direction = PassTo(73);
    const bool againstClock = direction.Integer() != 0;
    const bool nowAgainst = againstClock != (slope.Determinant() < 0);
    direction.SetInteger(nowAgainst ? 1 : 0);
    const double before = againstClock ? start : -start;
    const double turned = TurnedAngle(slope, before);
    if (turned == before && nowAgainst == againstClock) return;
    const double from = nowAgainst || turned == 0 ? turned : 360 - turned;
    made_[index].Set(from);
    made_[endIndex].Set(from + span);
}

void Hatch::Arc(bool isEllipse) {
    if (!map_.IsSimilar()) return FlattenedArc(isEllipse);
    if (!isEllipse) return TurnedArc();
    ++edges_;
    PassPlaces(10, 1);
    PassVectors(11);
    if (around_.SlopeOfVectors().Determinant() < 0) {
        Tag& direction = PassTo(73);
        direction.SetInteger(direction.Integer() == 0 ? 1 : 0);
    }
}

/// Old files end a spline with its control points; newer ones go on with the places that it fits,
/// whose number has the code that also counts the sources of the path.
bool Hatch::HasFit() {
    if (!IsNext(97) || at_ + 1 == record_.tags.size()) return false;
    const int after = record_.tags[at_ + 1].code;
    return after == 97 || after == 72 || after == 11 || after == 12;
}

void Hatch::FlattenedSpline() {
    const auto begin = made_.size() - 1;
    dxf::Spline spline{.degree = static_cast<int>(PassTo(94).Integer())};
    const bool rational = PassTo(73).Integer() != 0;
    const auto knots = PassTo(95).Integer();
    const auto places = PassTo(96).Integer();
    for (std::int64_t i = 0; i < knots; ++i) spline.knots.push_back(PassTo(40).Number());
    for (std::int64_t i = 0; i < places; ++i) {
        const double x = PassTo(10).Number();
        spline.control.push_back({{x, PassTo(20).Number()}, 0});
        while (rational && IsNext(42)) {  // after each place, or all after the last one
            Pass();
            spline.weights.push_back(made_.back().Number());
        }
    }
    if (!spline.IsWhole()) Missing(made_[begin]);
    if (HasFit()) {
        const auto fit = PassTo(97).Integer();
        for (std::int64_t i = 0; i / 2 < fit && Peek() != nullptr; ++i) Pass();
        while (IsNext(12) || IsNext(22) || IsNext(13) || IsNext(23)) Pass();
    }
    made_.resize(begin);
    const auto image = [&](double t) { return map_.At(spline.At(t).point); };
    AddLines(image(spline.Start()), Flattened(image, spline.Start(), spline.End(), tolerance_));
}

void Hatch::SplineEdge() {
    if (!map_.IsLinear()) return FlattenedSpline();
    ++edges_;
    PassTo(95);
    const auto places = PassTo(96).Integer();
    PassPlaces(10, places);
    while (IsNext(42)) Pass();
    if (!HasFit()) return;
    PassPlaces(11, PassTo(97).Integer());
    if (IsNext(12)) PassVectors(12);
    if (IsNext(13)) PassVectors(13);
}

void Hatch::Edges() {
    const auto count = PassTo(93).Integer();
    const auto counter = made_.size() - 1;
    edges_ = 0;
    for (std::int64_t i = 0; i < count; ++i) {
        switch (PassTo(72).Integer()) {
            case kLine:
                ++edges_;
                PassPlaces(10, 1);
                PassPlaces(11, 1);
                break;
            case kArc: Arc(false); break;
            case kEllipse: Arc(true); break;
            case kSpline: SplineEdge(); break;
            default: Missing(made_.back());
        }
    }
    made_[counter].SetInteger(edges_);
}

void Hatch::Pattern() {
    const Point reference = FirstPlace();
    Point base;
    std::size_t index = 0;
    while (Peek() != nullptr && Peek()->scope == Scope::kPlain) {
        if (IsNext(98)) {
            PassPlaces(10, PassTo(98).Integer());
            continue;
        }
        Pass();
        Tag& tag = made_.back();
        switch (tag.code) {
            case 52:
            case 53: tag.Set(TurnedAngle(around_.Slope(), tag.Number())); break;
            case 41:
            case 49: tag.Set(MeanScale(around_.Slope()) * tag.Number()); break;
            case 43:
            case 45:
                base.first = tag.Number();
                index = made_.size() - 1;
                break;
            case 44: {
                // The lines go on where the first edge takes them.
                base.second = tag.Number();
                const Point image =
                    map_.IsLinear() ? map_.At(base)
                                    : map_.At(reference) + Image(around_.Slope(), base - reference);
                tag.Set(image.second);
                made_[index].Set(image.first);
                break;
            }
            case 46: {
                base.second = tag.Number();
                const Point image = Image(around_.SlopeOfVectors(), base);
                tag.Set(image.second);
                made_[index].Set(image.first);
                break;
            }
            default: break;
        }
    }
}

void Hatch::Rewrite() {
    const auto paths = PassTo(91).Integer();
    for (std::int64_t i = 0; i < paths; ++i) {
        if ((PassTo(92).Integer() & kIsPolyline) != 0) {
            PolylinePath();
        } else {
            Edges();
        }
    }
    Pattern();
    while (Peek() != nullptr) Pass();
    record_.tags = std::move(made_);
}

}  // namespace

void RewriteHatch(Record& record, Work& work, std::string& out) {
    const int facing = FacingOf(record);
    Hatch hatch(record, work, facing);
    Surroundings& around = hatch.Around();
    ApplyExtended(record, work, facing, around);
    hatch.Rewrite();
    AppendRecord(out, record, work.form);
    if (hatch.HasPolylines()) ++work.report.polylines[std::string(record.Type())];
    Count(record, work, around);
}

}  // namespace kv_tr::dxf
