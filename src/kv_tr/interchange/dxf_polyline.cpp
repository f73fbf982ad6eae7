// Polylines with bulges and widths, and the polylines that stand for curves.
#include "kv_tr/interchange/dxf_polyline.h"

#include <algorithm>

namespace kv_tr::dxf {
namespace {

// Bits of group 70.
constexpr std::int64_t kClosed = 1;
constexpr std::int64_t kInSpace = 8 | 16 | 64;  // of a polyline: along a path, a mesh, faces
constexpr std::int64_t kPatternGoesOn = 128;    // of line types, over vertices
constexpr std::int64_t kFrame = 16;             // of a vertex: it only controls a spline
constexpr std::int64_t kPlaceOfFaces = 64;      // of a vertex: a place, and
constexpr std::int64_t kPartOfFaces = 128;      // together with that or alone a face

bool IsOfPolyline(const Tag& tag) { return tag.scope == Scope::kPlain; }

Outline OutlineOfLwPolyline(const Record& record) {
    Outline outline;
    outline.closed = (record.Integer(70, 0) & kClosed) != 0;
    const double width = record.Number(43, 0);
    for (const Tag& tag : record.tags) {
        if (!IsOfPolyline(tag)) continue;
        if (tag.code == 10) {
            outline.vertices.push_back(
                {.at = {tag.Number(), 0}, .startWidth = width, .endWidth = width});
        }
        if (outline.vertices.empty()) continue;
        Vertex& vertex = outline.vertices.back();
        if (tag.code == 20) vertex.at.second = tag.Number();
        if (tag.code == 40) vertex.startWidth = tag.Number();
        if (tag.code == 41) vertex.endWidth = tag.Number();
        if (tag.code == 42) vertex.bulge = tag.Number();
    }
    return outline;
}

Outline OutlineOfVertices(std::vector<Record>& records) {
    const Record& head = records.front();
    Outline outline;
    outline.closed = (head.Integer(70, 0) & kClosed) != 0;
    for (Record& record : records) {
        if (record.Type() != "VERTEX" || (record.Integer(70, 0) & kFrame) != 0) continue;
        const auto place = record.CoordinatesOf(10);
        if (!place) continue;
        outline.vertices.push_back({.at = place->Place(),
                                    .bulge = record.Number(42, 0),
                                    .startWidth = record.Number(40, head.Number(40, 0)),
                                    .endWidth = record.Number(41, head.Number(41, 0))});
    }
    return outline;
}

void AppendAll(std::string& out, const std::vector<Tag>& tags, const Form& form) {
    for (const Tag& tag : tags) Append(out, tag, form);
}

bool HasWidths(const Outline& outline) {
    return std::ranges::any_of(outline.vertices, [](const Vertex& vertex) {
        return vertex.startWidth != 0 || vertex.endWidth != 0;
    });
}

void AddPlace(std::vector<Tag>& tags, const Vertex& vertex, bool hasWidths) {
    tags.push_back(NewTag(10, vertex.at.first));
    tags.push_back(NewTag(20, vertex.at.second));
    if (!hasWidths) return;
    tags.push_back(NewTag(40, vertex.startWidth));
    tags.push_back(NewTag(41, vertex.endWidth));
}

void AddThickness(std::vector<Tag>& tags, const Record& of) {
    if (const double thickness = of.Number(39, 0); thickness != 0) {
        tags.push_back(NewTag(39, thickness));
    }
}

void AppendLwPolyline(std::string& out, const Record& of, const Outline& outline, double height,
                      std::int64_t flags, const Form& form) {
    const bool hasWidths = HasWidths(outline);
    std::vector<Tag> tags{NewText(0, "LWPOLYLINE")};
    std::ranges::copy(of.CommonTags(), std::back_inserter(tags));
    if (of.Find(100) != nullptr) tags.push_back(NewText(100, "AcDbPolyline"));
    tags.push_back(NewInteger(90, static_cast<std::int64_t>(outline.vertices.size())));
    tags.push_back(NewInteger(70, flags));
    if (height != 0) tags.push_back(NewTag(38, height));
    AddThickness(tags, of);
    for (const Vertex& vertex : outline.vertices) AddPlace(tags, vertex, hasWidths);
    AppendAll(out, tags, form);
}

void AppendOldPolyline(std::string& out, const Record& of, const Outline& outline, double height,
                       std::int64_t flags, const Form& form) {
    const bool hasWidths = HasWidths(outline);
    std::vector<Tag> parts;  // what vertices and the end of their sequence have from the polyline
    for (const Tag& tag : of.CommonTags()) {
        if (tag.code == 8 || tag.code == 67) parts.push_back(tag);
    }
    std::vector<Tag> tags{NewText(0, "POLYLINE")};
    std::ranges::copy(of.CommonTags(), std::back_inserter(tags));
    std::ranges::copy(std::vector{NewInteger(66, 1), NewTag(10, 0), NewTag(20, 0),
                                  NewTag(30, height), NewInteger(70, flags)},
                      std::back_inserter(tags));
    AddThickness(tags, of);
    std::ranges::copy(of.ExtrusionTags(), std::back_inserter(tags));
    std::ranges::copy(of.ExtendedTags(), std::back_inserter(tags));
    for (const Vertex& vertex : outline.vertices) {
        tags.push_back(NewText(0, "VERTEX"));
        std::ranges::copy(parts, std::back_inserter(tags));
        AddPlace(tags, vertex, hasWidths);
    }
    tags.push_back(NewText(0, "SEQEND"));
    std::ranges::copy(parts, std::back_inserter(tags));
    AppendAll(out, tags, form);
}

}  // namespace

bool Outline::HasBulges() const {
    return std::ranges::any_of(vertices, [](const Vertex& vertex) { return vertex.bulge != 0; });
}

Outline Flattened(const Outline& outline, const PlaneMap& map, double tolerance) {
    const auto& vertices = outline.vertices;
    Outline image{.closed = outline.closed};
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const Vertex& vertex = vertices[i];
        const double scale = MeanScale(map.SlopeAt(vertex.at));
        const bool last = i + 1 == vertices.size();
        Vertex before{.at = map.At(vertex.at),
                      .startWidth = scale * vertex.startWidth,
                      .endWidth = scale * vertex.endWidth};
        if (vertex.bulge == 0 || (last && !outline.closed)) {
            image.vertices.push_back(before);
            continue;
        }
        const Bulge bulge{vertex.at, vertices[last ? 0 : i + 1].at, vertex.bulge};
        const auto widthAt = [&](double t) {
            return scale * (vertex.startWidth + t * (vertex.endWidth - vertex.startWidth));
        };
        for (const Step& step :
             Flattened([&](double t) { return map.At(bulge.At(t)); }, 0, 1, tolerance)) {
            before.endWidth = widthAt(step.t);
            image.vertices.push_back(before);
            before = {.at = step.image, .startWidth = widthAt(step.t)};
        }
    }
    return image;
}

Outline OutlineOf(const std::function<Point(double)>& image, double from, double to, bool closed,
                  double tolerance) {
    Outline outline{.closed = closed};
    if (!closed) outline.vertices.push_back({.at = image(from)});
    for (const Step& step : Flattened(image, from, to, tolerance)) {
        outline.vertices.push_back({.at = step.image});
    }
    return outline;
}

void AppendPolyline(std::string& out, const Record& of, const Outline& outline, double height,
                    Work& work) {
    const bool isLight = of.Type() == "LWPOLYLINE";
    const bool hasFlags = isLight || of.Type() == "POLYLINE";
    const std::int64_t flags =
        (outline.closed ? kClosed : 0) | (hasFlags ? of.Integer(70, 0) & kPatternGoesOn : 0);
    if (isLight || work.version >= kFirstWithLwPolylines) {
        AppendLwPolyline(out, of, outline, height, flags, work.form);
        AppendAll(out, of.ExtrusionTags(), work.form);
        AppendAll(out, of.ExtendedTags(), work.form);
    } else {
        AppendOldPolyline(out, of, outline, height, flags, work.form);
    }
    ++work.report.polylines[std::string(of.Type())];
    ++work.report.moved;
}

void RewriteLwPolyline(Record& record, Work& work, std::string& out) {
    const int facing = FacingOf(record);
    const PlaneMap& own = work.Own(facing);
    const auto first = record.CoordinatesOf(10);
    Surroundings around(work, facing, first ? first->Place() : Point{});
    if (!own.IsSimilar()) {
        if (const Outline outline = OutlineOfLwPolyline(record); outline.HasBulges()) {
            const Outline flattened = Flattened(outline, own, work.tolerance);
            ApplyExtended(record, work, facing, around);
            return AppendPolyline(out, record, flattened, record.Number(38, 0), work);
        }
    }
    ApplyRules(record, RulesOf("LWPOLYLINE"), Scope::kPlain, work, facing, around);
    ApplyExtended(record, work, facing, around);
    AppendRecord(out, record, work.form);
    Count(record, work, around);
}

void RewritePolyline(std::vector<Record>& records, Work& work, std::string& out) {
    Record& head = records.front();
    const std::int64_t flags = head.Integer(70, 0);
    const bool inSpace = (flags & kInSpace) != 0;
    const int facing = inSpace ? 1 : FacingOf(head);
    const PlaneMap& own = work.Own(facing);
    const Outline outline = inSpace ? Outline{} : OutlineOfVertices(records);
    Surroundings around(work, facing,
                        outline.vertices.empty() ? Point{} : outline.vertices.front().at);
    ApplyExtended(head, work, facing, around);
    if (outline.HasBulges() && !own.IsSimilar()) {
        return AppendPolyline(out, head, Flattened(outline, own, work.tolerance),
                              head.Number(30, 0), work);
    }
    if (!inSpace) ApplyRules(head, RulesOf("POLYLINE"), Scope::kPlain, work, facing, around);
    for (Record& record : records) {
        if (record.Type() != "VERTEX") continue;
        const bool isFace =
            (record.Integer(70, 0) & (kPlaceOfFaces | kPartOfFaces)) == kPartOfFaces;
        if (!isFace) {
            ApplyRules(record, RulesOf("VERTEX"), Scope::kPlain, work, facing, around);
        }
        ApplyExtended(record, work, facing, around);
    }
    for (const Record& record : records) AppendRecord(out, record, work.form);
    Count(head, work, around);
}

}  // namespace kv_tr::dxf
