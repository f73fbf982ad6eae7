// Control points as GDAL has them.
#pragma once

#include <gdal_alg.h>

#include <vector>

#include "kv_tr/published/records.h"

namespace kv_tr::benchmarks {

class GdalPoints {
public:
    explicit GdalPoints(const std::vector<typeXYs4Tr>& pairs) : points_(pairs.size()) {
        GDALInitGCPs(Count(), points_.data());
        for (std::size_t i = 0; i < pairs.size(); ++i) {
            points_[i].dfGCPPixel = pairs[i].dXsour;
            points_[i].dfGCPLine = pairs[i].dYsour;
            points_[i].dfGCPX = pairs[i].dXdest;
            points_[i].dfGCPY = pairs[i].dYdest;
        }
    }
    ~GdalPoints() { GDALDeinitGCPs(Count(), points_.data()); }
    GdalPoints(const GdalPoints&) = delete;
    GdalPoints& operator=(const GdalPoints&) = delete;

    /// A transformer fitted in both directions, which the caller destroys.
    void* Fit(int order) const {
        return GDALCreateGCPTransformer(Count(), points_.data(), order, FALSE);
    }

private:
    int Count() const { return static_cast<int>(points_.size()); }

    std::vector<GDAL_GCP> points_;
};

}  // namespace kv_tr::benchmarks
