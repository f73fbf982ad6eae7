// What the fit does at a place: for the status line of a plan.
#pragma once

#include <cstdint>
#include <optional>

#include "kv_tr/analysis/point_precision.h"
#include "kv_tr/model/inverse.h"
#include "workbench/document.h"

namespace kv_tr::workbench {

/// A place in both systems and what the transformation is like there. Lengths in metres.
struct PlaceFigures {
    Point source;
    Point image;
    double sigma = kUndefined;   ///< of the image, the greater one of both coordinates
    double scale = kUndefined;   ///< √|ad - bc|, the mean scale there
    double rotation = 0;         ///< radians, from the first axis towards the second
    double distanceOutside = 0;  ///< from the area of the points in use; 0 inside

    /// The scale as parts per million from 1.
    double Ppm() const { return (scale - 1.0) * 1e6; }
    bool IsOutside() const { return distanceOutside > 0; }
};

/// Figures at places of a document. What is needed for them is computed once a fit.
class PlaceInfo {
public:
    /// The document outlives this object.
    explicit PlaceInfo(Document& document) : document_(document) {}

    /// At a place of the source; nothing where there is no fit, or no finite image.
    std::optional<PlaceFigures> AtSource(Point source);
    /// At a place of the destination; nothing as well where nothing is taken there.
    std::optional<PlaceFigures> AtDestination(Point destination);

private:
    bool Prepare();

    Document& document_;
    std::optional<std::uint64_t> prepared_;  // the version of the document
    std::optional<PointPrecision> precision_;
    std::optional<ExactInverse> inverse_;
};

}  // namespace kv_tr::workbench
