// The points of geometries in one array, and arcs as lines.
#include "kv_tr/gdal/vector_geometry.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string_view>

#include "kv_tr/text/number_text.h"

namespace kv_tr::gdal {
namespace {

class Collector : public OGRDefaultGeometryVisitor {
public:
    explicit Collector(std::vector<double>& pairs) : pairs_(pairs) {}
    using OGRDefaultGeometryVisitor::visit;

    void visit(OGRPoint* point) override {
        if (point->IsEmpty()) return;
        pairs_.push_back(point->getX());
        pairs_.push_back(point->getY());
    }
    void visit(OGRLineString* line) override { Add(*line); }
    void visit(OGRLinearRing* ring) override { Add(*ring); }
    void visit(OGRCircularString* arcs) override { Add(*arcs); }

private:
    void Add(const OGRSimpleCurve& curve) {
        const auto count = static_cast<std::size_t>(curve.getNumPoints());
        const std::size_t begin = pairs_.size();
        pairs_.resize(begin + 2 * count);
        double* out = pairs_.data() + begin;
        constexpr int kStride = 2 * sizeof(double);
        if (count > 0) curve.getPoints(out, kStride, out + 1, kStride);
    }

    std::vector<double>& pairs_;
};

class Replacer : public OGRDefaultGeometryVisitor {
public:
    explicit Replacer(const double* pairs) : pairs_(pairs) {}
    using OGRDefaultGeometryVisitor::visit;

    void visit(OGRPoint* point) override {
        if (point->IsEmpty()) return;
        point->setX(*pairs_++);
        point->setY(*pairs_++);
    }
    void visit(OGRLineString* line) override { Set(*line); }
    void visit(OGRLinearRing* ring) override { Set(*ring); }
    void visit(OGRCircularString* arcs) override { Set(*arcs); }

    const double* Rest() const { return pairs_; }

private:
    void Set(OGRSimpleCurve& curve) {
        const int count = curve.getNumPoints();
        for (int i = 0; i < count; ++i, pairs_ += 2) curve.setPoint(i, pairs_[0], pairs_[1]);
    }

    const double* pairs_;
};

/// Appends the points of an arc behind its first one, up to `to`, by chords around a centre.
void AppendChords(OGRLineString& line, const OGRPoint& from, const OGRPoint& to, Point centre,
                  double radius, double begin, double end, double greatestStep) {
    constexpr double kMostChords = 100000;
    const double wanted = std::ceil(std::abs(end - begin) / greatestStep);
    const int chords = static_cast<int>(std::clamp(wanted, 1.0, kMostChords));
    for (int i = 1; i < chords; ++i) {
        const double share = static_cast<double>(i) / chords;
        const double angle = begin + share * (end - begin);
        OGRPoint point = from;
        point.setX(centre.first + radius * std::cos(angle));
        point.setY(centre.second + radius * std::sin(angle));
        if (from.Is3D()) point.setZ(from.getZ() + share * (to.getZ() - from.getZ()));
        if (from.IsMeasured()) point.setM(from.getM() + share * (to.getM() - from.getM()));
        line.addPoint(&point);
    }
    line.addPoint(&to);
}

void AppendArcs(OGRLineString& line, const OGRCircularString& curve, double tolerance,
                std::size_t& arcs) {
    OGRPoint from;
    OGRPoint middle;
    OGRPoint to;
    for (int i = 0; i + 2 < curve.getNumPoints(); i += 2) {
        curve.getPoint(i, &from);
        curve.getPoint(i + 1, &middle);
        curve.getPoint(i + 2, &to);
        if (i == 0 && line.getNumPoints() == 0) line.addPoint(&from);
        ++arcs;
        double radius = 0;
        Point centre;
        double begin = 0;
        double between = 0;
        double end = 0;
        if (OGRGeometryFactory::GetCurveParameters(
                from.getX(), from.getY(), middle.getX(), middle.getY(), to.getX(), to.getY(),
                radius, centre.first, centre.second, begin, between, end) == 0) {
            line.addPoint(&middle);
            line.addPoint(&to);
            continue;
        }
        constexpr double kCoarsest = std::numbers::pi / 4;
        const double step =
            std::min(kCoarsest, 2 * std::acos(std::max(0.0, 1 - tolerance / radius)));
        AppendChords(line, from, middle, centre, radius, begin, between, step);
        AppendChords(line, middle, to, centre, radius, between, end, step);
    }
}

void AppendCurve(OGRLineString& line, const OGRCurve& curve, double tolerance, std::size_t& arcs) {
    if (const auto* compound = dynamic_cast<const OGRCompoundCurve*>(&curve)) {
        for (const OGRCurve* part : *compound) AppendCurve(line, *part, tolerance, arcs);
    } else if (const auto* circular = dynamic_cast<const OGRCircularString*>(&curve)) {
        AppendArcs(line, *circular, tolerance, arcs);
    } else if (const auto* simple = dynamic_cast<const OGRSimpleCurve*>(&curve)) {
        OGRPoint point;  // the first one is the last one of the curve before
        for (int i = line.getNumPoints() > 0 ? 1 : 0; i < simple->getNumPoints(); ++i) {
            simple->getPoint(i, &point);
            line.addPoint(&point);
        }
    }
}

template <class Line>
std::unique_ptr<Line> LineOf(const OGRCurve& curve, double tolerance, std::size_t& arcs) {
    auto line = std::make_unique<Line>();
    line->set3D(curve.Is3D());
    line->setMeasured(curve.IsMeasured());
    AppendCurve(*line, curve, tolerance, arcs);
    return line;
}

std::unique_ptr<OGRGeometry> PolygonOf(const OGRCurvePolygon& surface, double tolerance,
                                       std::size_t& arcs) {
    auto polygon = std::make_unique<OGRPolygon>();
    polygon->set3D(surface.Is3D());
    polygon->setMeasured(surface.IsMeasured());
    for (const OGRCurve* ring : surface) {
        polygon->addRingDirectly(LineOf<OGRLinearRing>(*ring, tolerance, arcs).release());
    }
    return polygon;
}

/// The collection of straight geometries that takes the place of one that may have curves.
std::unique_ptr<OGRGeometryCollection> EmptyLike(const OGRGeometryCollection& collection) {
    const auto type = OGR_GT_GetLinear(collection.getGeometryType());
    return std::unique_ptr<OGRGeometryCollection>(
        OGRGeometryFactory::createGeometry(type)->toGeometryCollection());
}

}  // namespace

void AppendPoints(OGRGeometry& geometry, std::vector<double>& pairs) {
    Collector collector(pairs);
    geometry.accept(&collector);
}

const double* ReplacePoints(OGRGeometry& geometry, const double* pairs) {
    Replacer replacer(pairs);
    geometry.accept(&replacer);
    return replacer.Rest();
}

bool KeepsCircles(const PointMap& map) {
    const auto* inverse = std::get_if<ExactInverse>(&map);
    const Transformation& forward =
        inverse != nullptr ? inverse->Forward() : std::get<Transformation>(map);
    if (IsPolynomial(forward.type)) return false;
    constexpr double kRounding = 1e-12;
    const auto& a = forward.a;
    const auto& b = forward.b;
    const double allowed = kRounding * std::hypot(a[1], a[2]);
    const bool turned = std::abs(b[2] - a[1]) <= allowed && std::abs(b[1] + a[2]) <= allowed;
    const bool mirrored = std::abs(b[2] + a[1]) <= allowed && std::abs(b[1] - a[2]) <= allowed;
    return turned || mirrored;
}

std::string ExactWkt(const OGRGeometry& geometry) {
    OGRWktOptions options;
    options.variant = wkbVariantIso;
    options.format = OGRWktFormat::G;
    options.precision = 17;
    options.round = false;
    const std::string wkt = geometry.exportToWkt(options);
    constexpr std::string_view kDigits = "-.0123456789";
    constexpr std::string_view kBehind = " ,()";
    std::string text;
    for (std::size_t begin = 0; begin < wkt.size();) {
        const std::size_t number = std::min(wkt.find_first_of(kDigits, begin), wkt.size());
        const std::size_t end = std::min(wkt.find_first_of(kBehind, number), wkt.size());
        text.append(wkt, begin, number - begin);
        if (number < end) text += ShortestText(std::strtod(wkt.c_str() + number, nullptr));
        begin = end;
    }
    return text;
}

std::unique_ptr<OGRGeometry> WithoutArcs(const OGRGeometry& geometry, double tolerance,
                                         std::size_t& arcs) {
    std::unique_ptr<OGRGeometry> result;
    const auto type = wkbFlatten(geometry.getGeometryType());
    if (type == wkbCircularString || type == wkbCompoundCurve) {
        result = LineOf<OGRLineString>(*geometry.toCurve(), tolerance, arcs);
    } else if (type == wkbCurvePolygon) {
        result = PolygonOf(*geometry.toCurvePolygon(), tolerance, arcs);
    } else if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection) != 0) {
        auto collection = EmptyLike(*geometry.toGeometryCollection());
        for (const OGRGeometry* part : *geometry.toGeometryCollection()) {
            collection->addGeometryDirectly(WithoutArcs(*part, tolerance, arcs).release());
        }
        result = std::move(collection);
    } else {
        result.reset(geometry.clone());
    }
    result->assignSpatialReference(geometry.getSpatialReference());
    return result;
}

}  // namespace kv_tr::gdal
