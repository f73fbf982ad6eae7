// The formats that layers are read and written in.
#include "kv_tr/gdal/vector_formats.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>

#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/gdal/work.h"

namespace kv_tr::gdal {
namespace {

bool WritesLayers(GDALDriver& driver) {
    return Can(driver, GDAL_DCAP_VECTOR) && Can(driver, GDAL_DCAP_CREATE);
}

bool IsOneOf(GDALDriver& driver, std::initializer_list<const char*> names) {
    return std::ranges::any_of(names, [&](const char* name) { return IsDriver(driver, name); });
}

/// The endings of a driver's files, without dots; the usual one first.
std::vector<std::string> EndingsOf(GDALDriver& driver) {
    std::vector<std::string> endings;
    const char* usual = driver.GetMetadataItem(GDAL_DMD_EXTENSION);
    const char* all = driver.GetMetadataItem(GDAL_DMD_EXTENSIONS);
    if (usual != nullptr && *usual != '\0') endings.emplace_back(usual);
    std::istringstream words(all == nullptr ? "" : all);
    for (std::string word; words >> word;) endings.push_back(word);
    return endings;
}

}  // namespace

Dataset OpenLayers(const std::filesystem::path& path) {
    RegisterDrivers();
    const ErrorLog errors;
    Dataset set(GDALDataset::Open(path.string().c_str(),
                                  GDAL_OF_VECTOR | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR));
    if (!set) throw DataSetError(Text::kNotADataSet, {path.string(), errors.Cause()});
    return set;
}

GDALDriver& DriverNamed(const std::string& format, const std::filesystem::path& target) {
    if (format.empty()) return DriverFor(target);
    RegisterDrivers();
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(format.c_str());
    if (driver != nullptr && WritesLayers(*driver)) return *driver;
    throw DataSetError(Text::kFormatNotWritten,
                       {format, "GPKG, ESRI Shapefile, GeoJSON, DXF, ..."});
}

GDALDriver& DriverFor(const std::filesystem::path& target) {
    RegisterDrivers();
    const std::string ending = target.extension().string();
    GDALDriverManager& drivers = *GetGDALDriverManager();
    for (int i = 0; ending.size() > 1 && i < drivers.GetDriverCount(); ++i) {
        GDALDriver& driver = *drivers.GetDriver(i);
        if (!WritesLayers(driver)) continue;
        for (const std::string& known : EndingsOf(driver)) {
            if (EQUAL(known.c_str(), ending.c_str() + 1)) return driver;
        }
    }
    throw DataSetError(Text::kFormatUnclear, {target.string()});
}

bool Can(GDALDriver& driver, const char* capability) {
    const char* value = driver.GetMetadataItem(capability);
    return value != nullptr && EQUAL(value, "YES");
}

bool IsDriver(GDALDriver& driver, const char* name) { return EQUAL(driver.GetDescription(), name); }

bool HoldsOneLayer(GDALDriver& driver) {
    return !Can(driver, GDAL_DCAP_MULTIPLE_VECTOR_LAYERS) ||
           IsOneOf(driver, {"ESRI Shapefile", "FlatGeobuf", "CSV", "MapInfo File", "DXF"});
}

bool MeansDegrees(GDALDriver& driver) {
    return IsOneOf(driver, {"GeoJSON", "GeoJSONSeq", "KML", "LIBKML", "GPX"});
}

bool ChecksItsWriting(GDALDriver& driver) {
    return !IsOneOf(driver, {"GeoJSON", "GeoJSONSeq", "KML", "LIBKML", "GML", "MapInfo File"});
}

std::string EndingOf(GDALDriver& driver) {
    if (IsDriver(driver, "GeoJSON")) return ".geojson";  // which is not the first that it lists
    const auto endings = EndingsOf(driver);
    return endings.empty() ? "" : "." + endings.front();
}

bool HasLayerOption(GDALDriver& driver, const char* name) {
    const char* options = driver.GetMetadataItem(GDAL_DS_LAYER_CREATIONOPTIONLIST);
    const std::string_view list = options == nullptr ? "" : options;
    return list.find("name='" + std::string(name) + "'") != list.npos ||
           list.find("name=\"" + std::string(name) + "\"") != list.npos;
}

}  // namespace kv_tr::gdal
