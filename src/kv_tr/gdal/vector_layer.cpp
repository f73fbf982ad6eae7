// A layer that is made like another one.
#include "kv_tr/gdal/vector_layer.h"

#include <algorithm>
#include <string_view>
#include <system_error>

#include "kv_tr/gdal/vector_geometry.h"

namespace kv_tr::gdal {
namespace {

constexpr const char* kStyleField = "OGR_STYLE";

/// A name that no field of a layer has.
std::string FreeName(const OGRFeatureDefn& fields, std::string name) {
    while (fields.GetFieldIndex(name.c_str()) >= 0) name += '_';
    return name;
}

std::string DescriptionOf(const OGRFieldDefn& field) {
    std::string text = field.GetNameRef();
    text += " (";
    text += OGRFieldDefn::GetFieldTypeName(field.GetType());
    if (field.GetSubType() != OFSTNone) {
        text += std::string(" ") + OGRFieldDefn::GetFieldSubTypeName(field.GetSubType());
    }
    if (field.GetWidth() > 0) text += " " + std::to_string(field.GetWidth());
    if (field.GetPrecision() > 0) text += "." + std::to_string(field.GetPrecision());
    return text + ")";
}

/// Whether a field holds all that another one may hold, under the same name.
bool HoldsAllOf(const OGRFieldDefn& target, const OGRFieldDefn& source) {
    const auto isNarrower = [](int made, int wanted) {
        return wanted > 0 && made > 0 && made < wanted;
    };
    if (std::string_view(target.GetNameRef()) != source.GetNameRef() ||
        target.GetType() != source.GetType() || target.GetSubType() != source.GetSubType()) {
        return false;
    }
    const bool isDate = source.GetType() == OFTDate || source.GetType() == OFTDateTime;
    return isDate ||  // whose width says nothing
           (!isNarrower(target.GetWidth(), source.GetWidth()) &&
            !isNarrower(target.GetPrecision(), source.GetPrecision()));
}

/// Whether a driver lists its types of fields and this is none of them.
bool LacksType(GDALDriver& driver, OGRFieldType type) {
    const char* listed = driver.GetMetadataItem(GDAL_DMD_CREATIONFIELDDATATYPES);
    if (listed == nullptr) return false;
    const std::string types = " " + std::string(listed) + " ";
    return types.find(" " + std::string(OGRFieldDefn::GetFieldTypeName(type)) + " ") == types.npos;
}

/// Whether one of the first features has a style.
bool HasStyles(OGRLayer& layer) {
    constexpr int kLooks = 100;
    bool found = false;
    layer.ResetReading();
    for (int i = 0; i < kLooks && !found; ++i) {
        const std::unique_ptr<OGRFeature> feature(layer.GetNextFeature());
        if (!feature) break;
        found = feature->GetStyleString() != nullptr;
    }
    layer.ResetReading();
    return found;
}

void CopyMetadata(GDALMajorObject& from, GDALMajorObject& to) {
    char** domains = from.GetMetadataDomainList();
    for (int i = 0; i < CSLCount(domains); ++i) {
        const std::string_view domain = domains[i];
        if (domain == "SUBDATASETS" || domain == "DERIVED_SUBDATASETS" ||
            domain == "IMAGE_STRUCTURE") {
            continue;
        }
        if (char** items = from.GetMetadata(domains[i]); CSLCount(items) > 0) {
            to.SetMetadata(items, domains[i]);
        }
    }
    CSLDestroy(domains);
}

/// The options that keep what a layer is called inside its file, and every digit.
void SetLayerOptions(Options& options, OGRLayer& source, GDALDriver& driver) {
    const auto set = [&](const char* name, const std::string& value) {
        if (!value.empty() && HasLayerOption(driver, name)) options.Set(name, value);
    };
    const OGRFeatureDefn& fields = *source.GetLayerDefn();
    const std::string identifier = source.GetFIDColumn();
    const std::string geometry = source.GetGeometryColumn();
    set("FID", FreeName(fields, identifier.empty() ? "fid" : identifier));
    set("GEOMETRY_NAME", FreeName(fields, geometry.empty() ? "geom" : geometry));
    for (const char* item : {"IDENTIFIER", "DESCRIPTION"}) {
        const char* value = source.GetMetadataItem(item);
        set(item, value == nullptr ? "" : value);
    }
    set("SIGNIFICANT_FIGURES", "17");
    if (IsDriver(driver, "CSV")) {
        set("CREATE_CSVT", "YES");
    }
    if (IsDriver(driver, "ESRI Shapefile")) set("ENCODING", "UTF-8");
}

}  // namespace

std::string CauseOf(const ErrorLog& errors) {
    const std::string cause = errors.Cause();
    return cause.empty() ? std::make_error_code(std::errc::io_error).message() : cause;
}

LikeLayer::LikeLayer(OGRLayer& source, GDALDataset& target, const LayerPlan& plan,
                     const Remark& remark) {
    Create(source, target, plan);
    keepsCurves_ = plan.keepsCurves && layer_->TestCapability(OLCCurveGeometries) != 0;
    keepsMeasures_ = layer_->TestCapability(OLCMeasuredGeometries) != 0;
    CopyMetadata(source, *layer_);
    layer_->SetStyleTable(source.GetStyleTable());
    AddGeometryFields(source, plan, remark);
    AddFields(source, plan, remark);
    AddStyles(source, plan, remark);
    if (*source.GetFIDColumn() != '\0' && *layer_->GetFIDColumn() == '\0' &&
        !IsDriver(*plan.driver, "GeoJSON") && !IsDriver(*plan.driver, "GeoJSONSeq")) {
        remark({Text::kIdentifiersAnew,
                {plan.source, source.GetName(), plan.driver->GetDescription()}});
    }
}

void LikeLayer::Create(OGRLayer& source, GDALDataset& target, const LayerPlan& plan) {
    const ErrorLog errors;
    Options options;
    SetLayerOptions(options, source, *plan.driver);
    auto type = source.GetGeomType();
    const bool holdsCurves = plan.keepsCurves && Can(*plan.driver, GDAL_DCAP_CURVE_GEOMETRIES);
    if (!holdsCurves) type = OGR_GT_GetLinear(type);
    const bool asText = IsDriver(*plan.driver, "CSV") && type != wkbNone;
    if (asText) type = wkbNone;
    auto* system = type == wkbNone ? nullptr : plan.system;
    layer_ = target.CreateLayer(source.GetName(), system, type, options.List());
    if (layer_ == nullptr) {
        throw DataSetError(Text::kLayerNotWritten, {plan.source, source.GetName(), errors.Cause()});
    }
    if (!asText) return;
    OGRFieldDefn field("WKT", OFTString);  // the format's own geometries have 15 digits
    if (layer_->CreateField(&field, TRUE) == OGRERR_NONE) wktField_ = 0;
}

void LikeLayer::AddGeometryFields(OGRLayer& source, const LayerPlan& plan, const Remark& remark) {
    const ErrorLog errors;
    OGRFeatureDefn& from = *source.GetLayerDefn();
    const OGRFeatureDefn& to = *layer_->GetLayerDefn();
    std::string leftOut;
    for (int i = 0; i < from.GetGeomFieldCount(); ++i) {
        if (i > 0) {
            OGRGeomFieldDefn field(from.GetGeomFieldDefn(i));
            field.SetSpatialRef(plan.system);
            if (!plan.keepsCurves) field.SetType(OGR_GT_GetLinear(field.GetType()));
            if (layer_->CreateGeomField(&field) != OGRERR_NONE) {
                leftOut += (leftOut.empty() ? "" : ", ") + std::string(field.GetNameRef());
            }
        }
        geometryFields_.push_back(i < to.GetGeomFieldCount() ? i : -1);
    }
    isSame_ = from.GetGeomFieldCount() == to.GetGeomFieldCount();
    if (!leftOut.empty()) {
        remark({Text::kGeometryFieldsLeftOut,
                {plan.source, source.GetName(), plan.driver->GetDescription(), leftOut}});
    }
}

void LikeLayer::AddFields(OGRLayer& source, const LayerPlan& plan, const Remark& remark) {
    const OGRFeatureDefn& from = *source.GetLayerDefn();
    const OGRFeatureDefn& to = *layer_->GetLayerDefn();
    const int given = to.GetFieldCount();  // by formats whose fields are fixed
    for (int i = 0; i < from.GetFieldCount(); ++i) {
        const ErrorLog errors;
        const OGRFieldDefn& wanted = *from.GetFieldDefn(i);
        OGRFieldDefn field(&wanted);
        if (LacksType(*plan.driver, field.GetType())) {  // as a text nothing is lost
            field.SetSubType(OFSTNone);
            field.SetType(OFTString);
            field.SetWidth(0);
            field.SetPrecision(0);
        }
        const int count = to.GetFieldCount();
        int place = to.GetFieldIndex(wanted.GetNameRef());
        if (place < 0 || place >= given) {
            layer_->CreateField(&field, TRUE);
            place = to.GetFieldCount() > count ? count : -1;
        }
        fields_.push_back(place);
        if (place < 0) {
            remark({Text::kFieldLeftOut,
                    {plan.source, source.GetName(), plan.driver->GetDescription(),
                     DescriptionOf(wanted)}});
        } else if (!HoldsAllOf(*to.GetFieldDefn(place), wanted)) {
            remark({Text::kFieldBecomes,
                    {plan.source, source.GetName(), DescriptionOf(wanted),
                     DescriptionOf(*to.GetFieldDefn(place))}});
        }
        isSame_ = isSame_ && place == i && to.GetFieldDefn(i)->GetType() == wanted.GetType();
    }
    isSame_ = isSame_ && to.GetFieldCount() == from.GetFieldCount();
}

void LikeLayer::AddStyles(OGRLayer& source, const LayerPlan& plan, const Remark& remark) {
    if (!Can(*plan.sourceDriver, GDAL_DCAP_FEATURE_STYLES) ||
        Can(*plan.driver, GDAL_DCAP_FEATURE_STYLES) ||
        source.GetLayerDefn()->GetFieldIndex(kStyleField) >= 0 || !HasStyles(source)) {
        return;
    }
    const ErrorLog errors;
    OGRFieldDefn field(kStyleField, OFTString);
    const int count = layer_->GetLayerDefn()->GetFieldCount();
    if (layer_->CreateField(&field, TRUE) != OGRERR_NONE) return;
    styleField_ = count;
    isSame_ = false;
    remark({Text::kStylesBecomeField,
            {plan.source, source.GetName(), plan.driver->GetDescription(), kStyleField}});
}

std::unique_ptr<OGRFeature> LikeLayer::Fitted(std::unique_ptr<OGRFeature> feature) const {
    OGRFeatureDefn& form = *layer_->GetLayerDefn();
    if (isSame_) {
        feature->SetFDefnUnsafe(&form);
        return feature;
    }
    auto fitted = std::make_unique<OGRFeature>(&form);
    fitted->SetFieldsFrom(feature.get(), fields_.data(), TRUE);
    if (const auto* geometry = feature->GetGeometryRef(); wktField_ >= 0 && geometry != nullptr) {
        fitted->SetField(wktField_, ExactWkt(*geometry).c_str());
    }
    for (std::size_t i = 0; i < geometryFields_.size(); ++i) {
        if (geometryFields_[i] < 0) continue;
        fitted->SetGeomFieldDirectly(geometryFields_[i],
                                     feature->StealGeometry(static_cast<int>(i)));
    }
    fitted->SetFID(feature->GetFID());
    if (const char* style = feature->GetStyleString()) {
        fitted->SetStyleString(style);
        if (styleField_ >= 0) fitted->SetField(styleField_, style);
    }
    if (const char* native = feature->GetNativeData()) {
        fitted->SetNativeData(native);
        fitted->SetNativeMediaType(feature->GetNativeMediaType());
    }
    return fitted;
}

}  // namespace kv_tr::gdal
