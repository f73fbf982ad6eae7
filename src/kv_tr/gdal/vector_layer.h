// A layer that is made like another one.
#pragma once

#include <ogrsf_frmts.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/gdal/vector_formats.h"
#include "kv_tr/gdal/work.h"

namespace kv_tr::gdal {

/// The cause of a failure to write, also where GDAL names none.
std::string CauseOf(const ErrorLog& errors);

/// Takes remarks for the user.
using Remark = std::function<void(DataSetError)>;

/// Who is copied to where, for remarks and errors.
struct LayerPlan {
    std::string source;  ///< name of the data set
    GDALDriver* sourceDriver = nullptr;
    GDALDriver* driver = nullptr;           ///< of the target
    OGRSpatialReference* system = nullptr;  ///< of the target, or none
    bool keepsCurves = false;
};

/// A new layer, and how features get into it.
class LikeLayer {
public:
    /// Makes a layer with the fields, geometry fields, metadata and options of the source, as far
    /// as the format has such; remarks on what differs. DataSetError when there can be none.
    LikeLayer(OGRLayer& source, GDALDataset& target, const LayerPlan& plan, const Remark& remark);

    OGRLayer& Layer() { return *layer_; }
    bool KeepsCurves() const { return keepsCurves_; }
    bool KeepsMeasures() const { return keepsMeasures_; }

    /// The feature as one of the new layer, with its geometries, identifier and style.
    std::unique_ptr<OGRFeature> Fitted(std::unique_ptr<OGRFeature> feature) const;

private:
    void Create(OGRLayer& source, GDALDataset& target, const LayerPlan& plan);
    void AddGeometryFields(OGRLayer& source, const LayerPlan& plan, const Remark& remark);
    void AddFields(OGRLayer& source, const LayerPlan& plan, const Remark& remark);
    void AddStyles(OGRLayer& source, const LayerPlan& plan, const Remark& remark);

    OGRLayer* layer_ = nullptr;
    bool keepsCurves_ = false;
    bool keepsMeasures_ = true;
    std::vector<int> geometryFields_;  // of the target, by those of the source; -1 for none
    std::vector<int> fields_;
    bool isSame_ = true;  // the features of the source are of the form of the target
    int styleField_ = -1;
    int wktField_ = -1;  // where geometries are texts
};

}  // namespace kv_tr::gdal
