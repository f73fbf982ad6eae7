// The features of one layer, transformed into another one.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "kv_tr/gdal/vector_layer.h"
#include "kv_tr/gdal/vector_transform.h"

namespace kv_tr::gdal {

/// Reads and transforms batches of features in one thread while another one writes those before.
class LayerCopy {
public:
    LayerCopy(OGRLayer& source, LikeLayer& target, const LayerPlan& plan,
              const VectorRequest& request, const MapOnMaps& map, VectorResult& result);

    /// Writes all features; is told after each batch how many are done.
    void Run(const std::function<void(std::size_t features)>& tell);

    /// Whether a feature had measures that the target does not hold.
    bool LostMeasures() const { return lostMeasures_; }

private:
    using Features = std::vector<std::unique_ptr<OGRFeature>>;

    Features NextBatch();
    void Prepare(OGRFeature& feature);
    void Transform(Features& features);
    void DropLost(Features& features);
    void Write(Features& features);

    OGRLayer& source_;
    LikeLayer& target_;
    const LayerPlan& plan_;
    const VectorRequest& request_;
    const MapOnMaps& map_;
    VectorResult& result_;
    const bool straightens_;
    bool lostMeasures_ = false;
    std::vector<double> pairs_;
    std::vector<std::size_t> ends_;  // of the features in it, in points
    std::vector<NoSource> troubles_;
};

}  // namespace kv_tr::gdal
