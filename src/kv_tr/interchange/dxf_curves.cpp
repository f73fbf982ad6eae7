// Circles, arcs, ellipses and splines of a drawing after a transformation.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "kv_tr/interchange/dxf_polyline.h"

namespace kv_tr::dxf {
namespace {

using std::numbers::pi;
constexpr double kWhole = 2 * pi;

[[noreturn]] void Incomplete(const Record& record) {
    throw Trouble{
        {.kind = DrawingProblem::Kind::kMissingCoordinate, .line = record.tags.front().line}};
}

bool IsWhole(const Ellipse& ellipse) {
    return std::abs(ellipse.end - ellipse.start - kWhole) <= 1e-9;
}

/// The circle or arc in its plane.
Ellipse CircleOf(Record& record) {
    const auto centre = record.CoordinatesOf(10);
    if (!centre || record.Find(40) == nullptr) Incomplete(record);
    Ellipse circle{.centre = centre->Place(), .major = {record.Number(40, 0), 0}, .end = kWhole};
    if (record.Type() == "ARC") {
        const double start = record.Number(50, 0);
        double span = std::fmod(record.Number(51, 360) - start, 360);
        if (span <= 0) span += 360;
        circle.start = start * pi / 180;
        circle.end = (start + span) * pi / 180;
    }
    return circle;
}

/// The arc stays an arc: start and end change places where it is mirrored.
void TurnArc(Record& record, const Derivative& slope) {
    Tag* start = record.Find(50);
    Tag* end = record.Find(51);
    if (start == nullptr || end == nullptr) return;
    const double span = end->Number() - start->Number();
    const bool mirrors = slope.Determinant() < 0;
    const double from = TurnedAngle(slope, mirrors ? end->Number() : start->Number());
    double to = TurnedAngle(slope, mirrors ? start->Number() : end->Number());
    if (from == start->Number() && to == end->Number()) return;
    if (span != 0 && std::fmod(span, 360) == 0) to = from + std::abs(span);
    start->Set(from);
    end->Set(to);
}

void AppendEllipse(std::string& out, const Record& of, const Ellipse& ellipse, int facing,
                   double height, Work& work) {
    const double toWorld = facing < 0 ? -1 : 1;
    Record made;
    made.tags.push_back(NewText(0, "ELLIPSE"));
    std::ranges::copy(of.CommonTags(), std::back_inserter(made.tags));
    if (of.Find(100) != nullptr) made.tags.push_back(NewText(100, "AcDbEllipse"));
    const auto add = [&made](int code, double number) {
        made.tags.push_back(NewTag(code, number));
    };
    add(10, toWorld * ellipse.centre.first);
    add(20, ellipse.centre.second);
    add(30, toWorld * height);
    add(11, toWorld * ellipse.major.first);
    add(21, ellipse.major.second);
    add(31, 0);
    std::ranges::copy(of.ExtrusionTags(), std::back_inserter(made.tags));
    add(40, ellipse.ratio);
    add(41, ellipse.start);
    add(42, ellipse.end);
    std::ranges::copy(of.ExtendedTags(), std::back_inserter(made.tags));
    AppendRecord(out, made, work.form);
    ++work.report.ellipses[std::string(of.Type())];
    ++work.report.moved;
}

void AppendCurve(std::string& out, const Record& of, const Ellipse& ellipse, const PlaneMap& map,
                 double height, Work& work) {
    const auto image = [&](double t) { return map.At(ellipse.At(t)); };
    AppendPolyline(out, of,
                   OutlineOf(image, ellipse.start, ellipse.end, IsWhole(ellipse), work.tolerance),
                   height, work);
}

Spline SplineOf(Record& record) {
    Spline spline{.degree = static_cast<int>(record.Integer(71, 3))};
    for (std::size_t i = 0; i < record.tags.size(); ++i) {
        const Tag& tag = record.tags[i];
        if (tag.scope != Scope::kPlain) continue;
        if (tag.code == 40) spline.knots.push_back(tag.Number());
        if (tag.code == 41) spline.weights.push_back(tag.Number());
        if (tag.code != 10) continue;
        const auto place = record.At(i);
        spline.control.push_back({place.Place(), place.z == nullptr ? 0 : place.z->Number()});
    }
    return spline;
}

/// A spline of degree 1, that is a polyline in space.
void AppendStraightSpline(std::string& out, const Record& of, const Spline& spline,
                          const std::vector<Step>& steps, Work& work) {
    Record made;
    made.tags.push_back(NewText(0, "SPLINE"));
    std::ranges::copy(of.CommonTags(), std::back_inserter(made.tags));
    if (of.Find(100) != nullptr) made.tags.push_back(NewText(100, "AcDbSpline"));
    const auto count = static_cast<std::int64_t>(steps.size());
    for (const auto& [code, number] : {std::pair{70, std::int64_t{0}},
                                       {71, std::int64_t{1}},
                                       {72, count + 2},
                                       {73, count},
                                       {74, std::int64_t{0}}}) {
        made.tags.push_back(NewInteger(code, number));
    }
    for (std::int64_t knot = -1; knot <= count; ++knot) {
        const auto within = std::clamp(knot, std::int64_t{0}, count - 1);
        made.tags.push_back(NewTag(40, static_cast<double>(within)));
    }
    for (const Step& step : steps) {
        made.tags.push_back(NewTag(10, step.image.first));
        made.tags.push_back(NewTag(20, step.image.second));
        made.tags.push_back(NewTag(30, spline.At(step.t).height));
    }
    std::ranges::copy(of.ExtendedTags(), std::back_inserter(made.tags));
    AppendRecord(out, made, work.form);
    ++work.report.polylines["SPLINE"];
    ++work.report.moved;
}

void FlattenSpline(Record& record, const Spline& spline, Work& work, std::string& out) {
    const auto image = [&](double t) { return work.map.At(spline.At(t).point); };
    std::vector<Step> steps{{spline.Start(), image(spline.Start())}};
    double last = spline.Start();
    for (const double knot : spline.knots) {  // between knots the curve is smooth
        if (knot <= last || knot > spline.End()) continue;
        const auto more = Flattened(image, last, knot, work.tolerance);
        steps.insert(steps.end(), more.begin(), more.end());
        last = knot;
    }
    const double height = spline.control.front().height;
    const bool level = std::ranges::all_of(
        spline.control, [height](const auto& place) { return place.height == height; });
    if (!level) return AppendStraightSpline(out, record, spline, steps, work);
    Outline outline;
    for (const Step& step : steps) outline.vertices.push_back({.at = step.image});
    // The normal of a spline says nothing of its coordinates.
    std::erase_if(record.tags, [](const Tag& tag) {
        return tag.code == 210 || tag.code == 220 || tag.code == 230;
    });
    AppendPolyline(out, record, outline, height, work);
}

}  // namespace

void RewriteCircle(Record& record, Work& work, std::string& out) {
    const int facing = FacingOf(record);
    const PlaneMap& own = work.Own(facing);
    const Ellipse circle = CircleOf(record);
    Surroundings around(work, facing, circle.centre);
    ApplyExtended(record, work, facing, around);
    if (own.IsSimilar()) {
        ApplyRules(record, RulesOf(record.Type()), Scope::kPlain, work, facing, around);
        if (record.Type() == "ARC") TurnArc(record, around.Slope());
        AppendRecord(out, record, work.form);
        return Count(record, work, around);
    }
    const double height = record.Number(30, 0);
    const bool asEllipse =
        own.IsLinear() && work.version >= kFirstWithEllipses && record.Number(39, 0) == 0;
    if (asEllipse) return AppendEllipse(out, record, ImageOf(circle, own), facing, height, work);
    AppendCurve(out, record, circle, own, height, work);
}

void RewriteEllipse(Record& record, Work& work, std::string& out) {
    const int facing = FacingOf(record);
    const PlaneMap& own = work.Own(facing);
    const auto centre = record.CoordinatesOf(10);
    const auto axis = record.CoordinatesOf(11);
    if (!centre || !axis || record.Find(40) == nullptr) Incomplete(record);
    const double toWorld = facing < 0 ? -1 : 1;
    const auto seen = [toWorld](Point p) { return Point{toWorld * p.first, p.second}; };
    Ellipse ellipse{.centre = seen(centre->Place()),
                    .major = seen(axis->Place()),
                    .ratio = record.Number(40, 1),
                    .start = record.Number(41, 0),
                    .end = record.Number(42, kWhole)};
    Surroundings around(work, facing, ellipse.centre);
    ApplyExtended(record, work, facing, around);
    if (!own.IsLinear()) {
        const double span = std::fmod(ellipse.end - ellipse.start, kWhole);
        if (!IsWhole(ellipse)) ellipse.end = ellipse.start + (span > 0 ? span : span + kWhole);
        const double height = centre->z == nullptr ? 0 : toWorld * centre->z->Number();
        return AppendCurve(out, record, ellipse, own, height, work);
    }
    const Ellipse image = ImageOf(ellipse, own);
    centre->Put(seen(image.centre));
    axis->Put(seen(image.major));
    record.Find(40)->Set(image.ratio);
    record.Put(42, image.end, kWhole, {41, 40});
    record.Put(41, image.start, 0, {40});
    AppendRecord(out, record, work.form);
    Count(record, work, around);
}

void RewriteSpline(Record& record, Work& work, std::string& out) {
    const int facing = FacingOf(record);
    const auto first = record.CoordinatesOf(record.Find(10) != nullptr ? 10 : 11);
    if (!first) Incomplete(record);
    Surroundings around(work, 1, first->Place());
    ApplyExtended(record, work, facing, around);
    if (!work.map.IsLinear() && record.Find(10) != nullptr) {
        const Spline spline = SplineOf(record);
        if (!spline.IsWhole()) Incomplete(record);
        return FlattenSpline(record, spline, work, out);
    }
    // Without control points the curve is what a program makes of the places that it fits.
    ApplyRules(record, RulesOf("SPLINE"), Scope::kPlain, work, 1, around);
    AppendRecord(out, record, work.form);
    if (!work.map.IsLinear()) around.Slope();
    Count(record, work, around);
}

}  // namespace kv_tr::dxf
