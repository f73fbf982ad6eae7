// Entities of a drawing as they are after a transformation.
#include "kv_tr/interchange/dxf_rewriter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "kv_tr/model/distortion.h"

namespace kv_tr::dxf {
namespace {

using enum Meaning;

Point Seen(int facing, Point place) {
    return facing < 0 ? Point{-place.first, place.second} : place;
}

/// The image of a vector or direction, which begins at a group.
void TurnVector(const Record::Coordinates& vector, Meaning meaning, int facing,
                Surroundings& around) {
    const bool own = meaning == kOwnVector;
    const Point before = own ? vector.Place() : Seen(facing, vector.Place());
    const double length = Length(before);
    if (length == 0) return;
    Point after = Image(own ? around.Slope() : around.SlopeOfVectors(), before);
    if (meaning == kDirection) after = (length / Length(after)) * after;
    vector.Put(own ? after : Seen(facing, after));
}

/// Texts that are aligned by a second place do not need the first, and others not the second; what
/// they do not need may be 0, 0.
bool IsUnusedPlace(const Record& record, const Record::Coordinates& place, int code) {
    const std::string_view type = record.Type();
    if (type != "TEXT" && type != "ATTRIB" && type != "ATTDEF") return false;
    const bool aligned =
        record.Integer(72, 0) != 0 || record.Integer(type == "TEXT" ? 73 : 74, 0) != 0;
    return (code == 11) != aligned && place.Place() == Point{};
}

/// The places that a dimension of a kind has; others may be anything.
bool IsPlaceOfDimension(std::int64_t kind, int code) {
    constexpr std::array kPlaces{std::array{10, 13, 14, 0, 0},   std::array{10, 13, 14, 0, 0},
                                 std::array{10, 13, 14, 15, 16}, std::array{10, 15, 0, 0, 0},
                                 std::array{10, 15, 0, 0, 0},    std::array{10, 13, 14, 15, 0},
                                 std::array{10, 13, 14, 0, 0}};
    const auto& places = kPlaces.at(std::min<std::size_t>(static_cast<std::size_t>(kind), 6));
    return code == 11 || code == 12 || std::ranges::find(places, code) != places.end();
}

std::int64_t KindOfDimension(const Record& record) { return record.Integer(70, 0) & 7; }

bool IsUnused(const Record& record, const Record::Coordinates& place, int code) {
    if (record.Type() == "DIMENSION") return !IsPlaceOfDimension(KindOfDimension(record), code);
    return IsUnusedPlace(record, place, code);
}

/// The place of an entity in its own plane.
Point OwnPlaceOf(Record& record, int facing) {
    const auto place = record.CoordinatesOf(10);
    if (!place) return {};
    const auto rules = RulesOf(record.Type());
    const auto rule = std::ranges::find(rules, 10, &Rule::code);
    const bool world = rule != rules.end() && rule->meaning == kPlace;
    return world ? Seen(facing, place->Place()) : place->Place();
}

bool NeedsNoPlane(const Record& record) {
    const std::string_view type = record.Type();
    for (const std::string_view free : {"3DFACE", "RAY", "XLINE", "MESH", "IMAGE", "WIPEOUT"}) {
        if (type == free) return true;
    }
    return (type == "LINE" || type == "POINT") && record.Number(39, 0) == 0;
}

/// Turns and scales a block as nearly as its reference can.
void TurnInsert(Record& record, Surroundings& around) {
    const double angle = record.Number(50, 0);
    const Point x = DirectionOf(angle);
    const Derivative& slope = around.Slope();
    const Point imageOfX = Image(slope, x);
    const Point imageOfY = Image(slope, Left(x));
    const double alongX = Length(imageOfX);
    const double alongY = slope.Determinant() < 0 ? -Length(imageOfY) : Length(imageOfY);
    record.Put(50, TurnedAngle(slope, angle), 0, {43, 42, 41, 30, 20});
    record.Put(42, alongY * record.Number(42, 1), 1, {41, 30, 20});
    record.Put(41, alongX * record.Number(41, 1), 1, {30, 20});
    if (Tag* columns = record.Find(44); columns != nullptr)
        columns->Set(alongX * columns->Number());
    if (Tag* rows = record.Find(45); rows != nullptr) rows->Set(alongY * rows->Number());
}

void TurnDimension(Record& record, Surroundings& around) {
    const auto kind = KindOfDimension(record);
    const Derivative& slope = around.Slope();
    if (kind == 0 && record.Find(50) == nullptr) {
        record.Put(50, TurnedAngle(slope, 0), 0, {34, 24});
    }
    // The horizontal direction is given by the negative of its angle.
    if (kind == 6 || record.Find(51) != nullptr) {
        const double before = -record.Number(51, 0);
        const double turned = TurnedAngle(slope, before);
        if (turned != before) {
            record.Put(51, turned == 0 ? 0 : 360 - turned, 0, {42, 71, 31, 21, 1});
        }
    }
    if (Tag* measure = record.Find(42); measure != nullptr && kind != 2 && kind != 5) {
        measure->Set(MeanScale(slope) * measure->Number());
    }
}

}  // namespace

const Derivative& Surroundings::Slope() {
    nearly_ = nearly_ || !map_.IsSimilar();
    return Computed();
}

const Derivative& Surroundings::SlopeOfVectors() { return map_.IsLinear() ? Computed() : Slope(); }

const Derivative& Surroundings::Computed() {
    if (!slope_) {
        slope_ = map_.SlopeAt(place_);
        if (!std::isfinite(slope_->Determinant()) || slope_->Determinant() == 0) {
            throw Trouble{
                {.kind = DrawingProblem::Kind::kNoImage, .reason = NoSource::kNotReached}};
        }
    }
    return *slope_;
}

int FacingOf(const Record& record) {
    const int facing = record.Facing();
    if (facing != 0) return facing;
    if (NeedsNoPlane(record)) return 1;
    throw Trouble{{.kind = DrawingProblem::Kind::kTiltedPlane}};
}

void ApplyRules(Record& record, std::span<const Rule> rules, Scope scope, const Work& work,
                int facing, Surroundings& around) {
    const PlaneMap& own = work.Own(facing);
    for (std::size_t i = 0; i < record.tags.size(); ++i) {
        Tag& tag = record.tags[i];
        if (tag.scope != scope) continue;
        const auto rule = std::ranges::find(rules, tag.code, &Rule::code);
        if (rule == rules.end()) continue;
        switch (rule->meaning) {
            case kPlace:
            case kOwnPlace: {
                const auto place = record.At(i);
                if (scope == Scope::kPlain && IsUnused(record, place, tag.code)) break;
                place.Put((rule->meaning == kPlace ? work.map : own).At(place.Place()));
                break;
            }
            case kVector:
            case kOwnVector:
            case kDirection: TurnVector(record.At(i), rule->meaning, facing, around); break;
            case kLength:
                if (const double length = tag.Number(); length != 0) {
                    tag.Set(MeanScale(around.Slope()) * length);
                }
                break;
            case kAngle: tag.Set(TurnedAngle(around.Slope(), tag.Number())); break;
            case kBulge:
                if (tag.Number() != 0 && around.SlopeOfVectors().Determinant() < 0) {
                    tag.Set(-tag.Number());
                }
                break;
        }
    }
    for (const Rule& rule : rules) {
        const bool missing = rule.meaning == kAngle && rule.after != 0 &&
                             record.Find(rule.code) == nullptr &&
                             (record.Type() != "MTEXT" || record.Find(11) == nullptr);
        if (missing && scope == Scope::kPlain) {
            record.Put(rule.code, TurnedAngle(around.Slope(), 0), 0, {rule.after, 30, 20});
        }
    }
}

void ApplyExtended(Record& record, const Work& work, int facing, Surroundings& around) {
    ApplyRules(record, EmbeddedRulesOf(record.Type()), Scope::kEmbedded, work, facing, around);
    Surroundings extended = around;  // what applications keep does not count as a shape
    ApplyRules(record, ExtendedRules(), Scope::kExtended, work, facing, extended);
}

void Count(const Record& record, Work& work, Surroundings& around) {
    ++work.report.moved;
    if (!around.IsNearly()) return;
    ++work.report.nearly[std::string(record.Type())];
    const Distortion distortion = DistortionOf(around.Slope());
    work.report.greatestDeparture = std::max(work.report.greatestDeparture,
                                             1 - distortion.leastScale / distortion.greatestScale);
}

void AppendRecord(std::string& out, const Record& record, const Form& form) {
    for (const Tag& tag : record.tags) Append(out, tag, form);
}

void RewriteEntity(Record& record, Work& work, std::string& out) {
    using Special = void (*)(Record&, Work&, std::string&);
    constexpr std::array<std::pair<std::string_view, Special>, 7> kSpecial{
        {{"ARC", RewriteCircle},
         {"CIRCLE", RewriteCircle},
         {"ELLIPSE", RewriteEllipse},
         {"SPLINE", RewriteSpline},
         {"LWPOLYLINE", RewriteLwPolyline},
         {"HATCH", RewriteHatch},
         {"MPOLYGON", RewriteHatch}}};
    const std::string_view type = record.Type();
    const int facing = FacingOf(record);
    for (const auto& [name, rewrite] : kSpecial) {
        if (type == name) return rewrite(record, work, out);
    }
    Surroundings around(work, facing, OwnPlaceOf(record, facing));
    ApplyRules(record, RulesOf(type), Scope::kPlain, work, facing, around);
    if (type == "INSERT") TurnInsert(record, around);
    if (type == "DIMENSION") TurnDimension(record, around);
    ApplyExtended(record, work, facing, around);
    AppendRecord(out, record, work.form);
    Count(record, work, around);
}

void RewriteView(Record& record, const ViewRule& rule, Work& work) {
    const auto centre = record.CoordinatesOf(rule.centre);
    if (!centre) return;
    const bool seenFromAbove = record.Number(rule.direction, 0) == 0 &&
                               record.Number(rule.direction + 10, 0) == 0 &&
                               record.Number(rule.direction + 20, 1) > 0;
    if (!seenFromAbove || record.Number(rule.twist, 0) != 0) {
        ++work.report.views;
        return;
    }
    try {
        const Point target{record.Number(rule.target, 0), record.Number(rule.target + 10, 0)};
        const Point place = centre->Place() + target;
        const Point image = work.map.At(place);
        const double scale = MeanScale(work.map.SlopeAt(place));
        centre->Put(image - target);
        for (const int size : {rule.height, rule.width}) {
            Tag* tag = size == 0 ? nullptr : record.Find(size);
            if (tag != nullptr) tag->Set(scale * tag->Number());
        }
    } catch (const Trouble& trouble) {
        if (trouble.problem.kind != DrawingProblem::Kind::kNoImage) throw;
        record.Restore();
        ++work.report.views;
    }
}

}  // namespace kv_tr::dxf
