// The features of one layer, transformed into another one.
#include "kv_tr/gdal/vector_copy.h"

#include <algorithm>
#include <future>
#include <utility>

#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/gdal/vector_geometry.h"
#include "kv_tr/model/hull.h"

namespace kv_tr::gdal {
namespace {

constexpr std::size_t kMostFeatures = 4096;
constexpr std::size_t kMostPoints = std::size_t{1} << 17;

/// What points outside the control points are in for; none where their box lies inside the hull.
PointPrecision::Extrapolation OutsideOf(const PointPrecision& precision,
                                        std::span<const double> pairs) {
    std::vector<Point> points;
    points.reserve(pairs.size() / 2);
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
        points.push_back({pairs[i], pairs[i + 1]});
    if (points.empty()) return {};
    const auto [left, right] = std::ranges::minmax(points, {}, &Point::first);
    const auto [low, high] = std::ranges::minmax(points, {}, &Point::second);
    const auto isInside = [&](double first, double second) {
        return DistanceOutside(precision.Hull(), {first, second}) == 0.0;
    };
    if (isInside(left.first, low.second) && isInside(left.first, high.second) &&
        isInside(right.first, low.second) && isInside(right.first, high.second)) {
        return {};
    }
    return precision.Outside(points);
}

}  // namespace

LayerCopy::LayerCopy(OGRLayer& source, LikeLayer& target, const LayerPlan& plan,
                     const VectorRequest& request, const MapOnMaps& map, VectorResult& result)
    : source_(source),
      target_(target),
      plan_(plan),
      request_(request),
      map_(map),
      result_(result),
      straightens_(!target.KeepsCurves()) {}

void LayerCopy::Run(const std::function<void(std::size_t)>& tell) {
    source_.ResetReading();
    const auto start = [this] {
        return std::async(std::launch::async | std::launch::deferred,
                          [this] { return NextBatch(); });
    };
    Features features = NextBatch();
    while (!features.empty()) {
        auto next = start();
        Write(features);
        features.clear();
        features = next.get();
        tell(result_.features);
    }
}

LayerCopy::Features LayerCopy::NextBatch() {
    const ErrorLog errors;
    Features features;
    do {
        features.clear();
        pairs_.clear();
        ends_.clear();
        while (features.size() < kMostFeatures && pairs_.size() < 2 * kMostPoints) {
            std::unique_ptr<OGRFeature> feature(source_.GetNextFeature());
            if (!feature) break;
            Prepare(*feature);
            features.push_back(std::move(feature));
            ends_.push_back(pairs_.size() / 2);
        }
        if (!errors.Failures().empty()) {
            throw DataSetError(Text::kNotADataSet, {plan_.source, errors.Cause()});
        }
        result_.features += features.size();
        const bool isLast = features.empty();
        Transform(features);
        if (isLast) break;
    } while (features.empty());  // all of them were left out
    return features;
}

void LayerCopy::Prepare(OGRFeature& feature) {
    for (int i = 0; i < feature.GetGeomFieldCount(); ++i) {
        OGRGeometry* geometry = feature.GetGeomFieldRef(i);
        if (geometry == nullptr) continue;
        if (straightens_ && geometry->hasCurveGeometry() != 0) {
            geometry = WithoutArcs(*geometry, request_.curveTolerance, result_.arcs).release();
            feature.SetGeomFieldDirectly(i, geometry);
        }
        if (geometry->getSpatialReference() != plan_.system) {
            geometry->assignSpatialReference(plan_.system);
        }
        lostMeasures_ = lostMeasures_ || (geometry->IsMeasured() != 0 && !target_.KeepsMeasures());
        AppendPoints(*geometry, pairs_);
    }
}

void LayerCopy::Transform(Features& features) {
    ToSystem(map_.sourceAxes, pairs_);
    if (request_.precision != nullptr) {
        result_.outside.Add(OutsideOf(*request_.precision, pairs_));
    }
    troubles_.resize(pairs_.size() / 2);
    const std::size_t lost = MapPairs(map_.map, pairs_, pairs_, troubles_);
    ToMap(map_.targetAxes, pairs_);
    const double* next = pairs_.data();
    for (auto& feature : features) {
        for (int i = 0; i < feature->GetGeomFieldCount(); ++i) {
            if (auto* geometry = feature->GetGeomFieldRef(i)) next = ReplacePoints(*geometry, next);
        }
    }
    if (lost > 0) DropLost(features);
}

void LayerCopy::DropLost(Features& features) {
    std::size_t begin = 0;
    for (std::size_t i = 0; i < features.size(); ++i) {
        const std::size_t end = ends_[i];
        const auto trouble = std::find_if(troubles_.begin() + static_cast<std::ptrdiff_t>(begin),
                                          troubles_.begin() + static_cast<std::ptrdiff_t>(end),
                                          [](NoSource why) { return why != NoSource::kNone; });
        begin = end;
        if (trouble == troubles_.begin() + static_cast<std::ptrdiff_t>(end)) continue;
        if (!request_.keepGoing) {
            throw DataSetError(
                Text::kFeatureNotMapped,
                {plan_.source, source_.GetName(), std::to_string(features[i]->GetFID())},
                ReasonFor(map_.map, *trouble));
        }
        features[i].reset();
        ++result_.leftOut;
    }
    std::erase(features, nullptr);
}

void LayerCopy::Write(Features& features) {
    const ErrorLog errors;
    for (auto& feature : features) {
        feature = target_.Fitted(std::move(feature));
        const auto number = feature->GetFID();
        if (target_.Layer().CreateFeature(feature.get()) == OGRERR_NONE &&
            errors.Failures().empty()) {
            continue;
        }
        throw DataSetError(Text::kFeatureNotWritten, {plan_.source, source_.GetName(),
                                                      std::to_string(number), CauseOf(errors)});
    }
    for (const std::string& warning : errors.Warnings()) {
        result_.remarks.push_back({Text::kGdalSays, {plan_.source, warning}});
    }
}

}  // namespace kv_tr::gdal
