// The formats that layers are read and written in.
#pragma once

#include <gdal_priv.h>

#include <filesystem>
#include <memory>
#include <string>

namespace kv_tr::gdal {

struct CloseDataset {
    void operator()(GDALDataset* set) const { GDALClose(set); }
};
using Dataset = std::unique_ptr<GDALDataset, CloseDataset>;

/// A list of options in the form that GDAL takes.
class Options {
public:
    Options() = default;
    ~Options() { CSLDestroy(list_); }
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    void Set(const char* name, const std::string& value) {
        list_ = CSLSetNameValue(list_, name, value.c_str());
    }
    char** List() const { return list_; }

private:
    char** list_ = nullptr;
};

/// Opens the layers of a file or folder for reading. DataSetError when that is impossible.
Dataset OpenLayers(const std::filesystem::path& path);

/// The driver that writes a format, named or told by the ending of a file; otherwise DataSetError.
GDALDriver& DriverNamed(const std::string& format, const std::filesystem::path& target);
GDALDriver& DriverFor(const std::filesystem::path& target);

bool Can(GDALDriver& driver, const char* capability);
bool IsDriver(GDALDriver& driver, const char* name);
/// Whether its files hold one layer each.
bool HoldsOneLayer(GDALDriver& driver);
/// Whether other programs take the coordinates of the format for longitudes and latitudes.
bool MeansDegrees(GDALDriver& driver);
/// Whether it notices everything that could not be written.
bool ChecksItsWriting(GDALDriver& driver);
/// The ending of its files, with the dot; empty for a driver without one.
std::string EndingOf(GDALDriver& driver);
/// Whether it knows a creation option for layers.
bool HasLayerOption(GDALDriver& driver, const char* name);

}  // namespace kv_tr::gdal
