// The raster that is written: its format, its bands, and what it takes over from its source.
#include "kv_tr/gdal/raster_target.h"

#include <ogr_spatialref.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::gdal {
namespace {

bool Writes(GDALDriver& driver) {
    const std::string name = driver.GetDescription();
    const auto has = [&](const char* item) { return driver.GetMetadataItem(item) != nullptr; };
    return has(GDAL_DCAP_RASTER) && (has(GDAL_DCAP_CREATE) || has(GDAL_DCAP_CREATECOPY)) &&
           name != "VRT" && name != "MEM";  // what they make is no file of its own
}

GDALDriver* DriverFor(const std::string& fileName) {
    GDALDriverManager& manager = *GetGDALDriverManager();
    for (int i = 0; i < manager.GetDriverCount(); ++i) {
        GDALDriver& driver = *manager.GetDriver(i);
        const char* extensions = driver.GetMetadataItem(GDAL_DMD_EXTENSIONS);
        if (extensions == nullptr || !Writes(driver)) continue;
        const CPLStringList words(CSLTokenizeString(extensions));
        for (int j = 0; j < words.Count(); ++j) {
            if (HasExtension(fileName, words[j])) return &driver;
        }
    }
    return nullptr;
}

/// Of the source, of all bands; empty where they differ.
std::string SharedBits(GDALDataset& source) {
    std::string bits;
    for (auto* band : source.GetBands()) {
        const char* item = band->GetMetadataItem("NBITS", "IMAGE_STRUCTURE");
        if (item == nullptr || (!bits.empty() && bits != item)) return {};
        bits = item;
    }
    return bits;
}

std::optional<double> NoDataOf(GDALRasterBand& band) {
    int has = 0;
    const double value = band.GetNoDataValue(&has);
    return has != 0 ? std::optional(value) : std::nullopt;
}

bool Holds(GDALDataType type, double value) {
    if (std::isnan(value)) return GDALDataTypeIsFloating(type) != 0;
    int clamped = 0;
    int rounded = 0;
    GDALAdjustValueToDataType(type, value, &clamped, &rounded);
    return clamped == 0 && rounded == 0;
}

/// But for figures of the pixels, which are others now.
void CopyBandMetadata(GDALRasterBand& from, GDALRasterBand& to) {
    const CPLStringList all(from.GetMetadata(), FALSE);
    CPLStringList kept;
    for (int i = 0; i < all.Count(); ++i) {
        if (!STARTS_WITH_CI(all[i], "STATISTICS_")) kept.AddString(all[i]);
    }
    if (kept.Count() > 0) to.SetMetadata(kept.List());
}

void CopyBand(GDALRasterBand& from, GDALRasterBand& to, bool keepsCodes) {
    to.SetDescription(from.GetDescription());
    if (const GDALColorTable* colours = from.GetColorTable()) {
        auto copy = *colours;
        to.SetColorTable(&copy);
    }
    to.SetColorInterpretation(from.GetColorInterpretation());
    int has = 0;
    if (const double scale = from.GetScale(&has); has != 0 && scale != 1) to.SetScale(scale);
    if (const double offset = from.GetOffset(&has); has != 0 && offset != 0) to.SetOffset(offset);
    if (*from.GetUnitType() != '\0') to.SetUnitType(from.GetUnitType());
    if (char** names = from.GetCategoryNames()) to.SetCategoryNames(names);
    if (keepsCodes && from.GetDefaultRAT() != nullptr) to.SetDefaultRAT(from.GetDefaultRAT());
    CopyBandMetadata(from, to);
}

void CopyMetadata(GDALDataset& from, GDALDataset& to) {
    for (const char* domain : {"", "COLOR_PROFILE", "xml:XMP", "EXIF", "xml:ESRI"}) {
        if (char** items = from.GetMetadata(domain)) to.SetMetadata(items, domain);
    }
}

/// With the bits of a pixel that the source has, where nothing is in the way.
CPLStringList CreationOptions(const RasterFormat& format, const RasterBands& bands,
                              GDALDataset& source) {
    CPLStringList options = format.options;
    const std::string bits = SharedBits(source);
    if (!bits.empty() && bands.targetAlpha == 0 && format.Knows("NBITS") &&
        options.FetchNameValue("NBITS") == nullptr) {
        options.SetNameValue("NBITS", bits.c_str());
    }
    if (format.Knows("BIGTIFF") && options.FetchNameValue("BIGTIFF") == nullptr) {
        options.SetNameValue("BIGTIFF", "IF_SAFER");
    }
    return options;
}

}  // namespace

bool RasterFormat::Knows(const std::string& option) const {
    const char* list = driver->GetMetadataItem(GDAL_DMD_CREATIONOPTIONLIST);
    return list != nullptr && std::string(list).find("name='" + option + "'") != std::string::npos;
}

RasterFormat FormatOf(const RasterJob& job) {
    RasterFormat format;
    const std::string output = job.output.string();
    if (job.format.empty()) {
        format.driver = DriverFor(output);
        if (format.driver == nullptr) throw DataSetError(Text::kFormatUnclear, {output});
    } else {
        format.driver = GetGDALDriverManager()->GetDriverByName(job.format.c_str());
        if (format.driver == nullptr || !Writes(*format.driver)) {
            throw DataSetError(Text::kRasterFormatNotWritten, {job.format});
        }
    }
    for (const std::string& option : job.options) format.options.AddString(option.c_str());
    if (!job.compression.empty()) {
        if (!format.Knows("COMPRESS")) {
            throw DataSetError(Text::kNoCompression, {format.Name()});
        }
        format.options.SetNameValue("COMPRESS", CPLString(job.compression).toupper());
    }
    const ErrorLog errors;
    if (GDALValidateCreationOptions(format.driver, format.options.List()) == 0) {
        throw DataSetError(
            Text::kBadCreationOption,
            {format.Name(), errors.Warnings().empty() ? errors.Cause() : errors.Warnings().back()});
    }
    return format;
}

RasterBands BandsOf(GDALDataset& source, const std::optional<double>& statedNoData) {
    RasterBands bands;
    for (int number = 1; number <= source.GetRasterCount(); ++number) {
        GDALRasterBand& band = *source.GetRasterBand(number);
        bands.type = number == 1 ? band.GetRasterDataType()
                                 : GDALDataTypeUnion(bands.type, band.GetRasterDataType());
        if (band.GetColorInterpretation() == GCI_AlphaBand && source.GetRasterCount() > 1 &&
            bands.sourceAlpha == 0) {
            bands.sourceAlpha = number;
            continue;
        }
        bands.hasPalette |= band.GetColorTable() != nullptr;
        bands.isColour |= band.GetColorInterpretation() == GCI_RedBand;
        bands.numbers.push_back(number);
        bands.noData.push_back(NoDataOf(band));
    }
    if (statedNoData && !Holds(bands.type, *statedNoData)) {
        throw DataSetError(Text::kNoDataDoesNotFit,
                           {ShortestText(*statedNoData), GDALGetDataTypeName(bands.type)});
    }
    bands.targetNoData = bands.noData;
    const auto hasOne = [](const std::optional<double>& value) { return value.has_value(); };
    if (statedNoData) {
        std::ranges::fill(bands.targetNoData, statedNoData);
    } else if (bands.sourceAlpha == 0 && std::ranges::none_of(bands.noData, hasOne) &&
               GDALDataTypeIsFloating(bands.type) != 0) {
        std::ranges::fill(bands.targetNoData, std::numeric_limits<double>::quiet_NaN());
    }
    if (bands.sourceAlpha != 0) {
        bands.targetAlpha = bands.sourceAlpha;
    } else if (!std::ranges::all_of(bands.targetNoData, hasOne)) {
        bands.targetAlpha = source.GetRasterCount() + 1;
    }
    return bands;
}

GDALDatasetUniquePtr CreateTarget(const RasterFormat& format, const std::filesystem::path& path,
                                  const RasterGrid& grid, const RasterBands& bands,
                                  const TargetCrs& crs, GDALDataset& source,
                                  const ErrorLog& errors) {
    GDALDatasetUniquePtr target(
        format.driver->Create(path.string().c_str(), grid.columns, grid.lines, bands.Count(),
                              bands.type, CreationOptions(format, bands, source).List()));
    if (target == nullptr) {
        throw DataSetError(Text::kRasterNotHeld, {format.Name(), errors.Cause()});
    }
    if (crs.IsStated()) {
        OGRSpatialReference system;
        system.importFromWkt(crs.wkt.c_str());
        system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        target->SetSpatialRef(&system);
    }
    auto place = grid.Place();
    target->SetGeoTransform(place.data());
    CopyMetadata(source, *target);
    for (std::size_t i = 0; i < bands.numbers.size(); ++i) {
        GDALRasterBand& band = *target->GetRasterBand(bands.numbers[i]);
        CopyBand(*source.GetRasterBand(bands.numbers[i]), band, bands.hasPalette);
        if (bands.targetNoData[i]) band.SetNoDataValue(*bands.targetNoData[i]);
    }
    if (bands.targetAlpha != 0) {
        target->GetRasterBand(bands.targetAlpha)->SetColorInterpretation(GCI_AlphaBand);
    }
    if (!errors.Failures().empty()) {
        throw DataSetError(Text::kRasterNotHeld, {format.Name(), errors.Cause()});
    }
    return target;
}

void CheckWritten(const std::filesystem::path& path, const RasterFormat& format,
                  const RasterBands& bands) {
    const ErrorLog errors;
    const GDALDatasetUniquePtr written(
        GDALDataset::Open(path.string().c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    if (written == nullptr) {
        throw DataSetError(Text::kRasterNotHeld, {format.Name(), errors.Cause()});
    }
    const int count = written->GetRasterCount();
    const bool hasAlpha =
        count == bands.Count() && bands.targetAlpha != 0 &&
        written->GetRasterBand(bands.targetAlpha)->GetColorInterpretation() == GCI_AlphaBand;
    if (bands.targetAlpha != 0 && !hasAlpha) {
        throw DataSetError(Text::kAlphaNotHeld, {format.Name()});
    }
    const bool hasPalette = count > 0 && written->GetRasterBand(1)->GetColorTable() != nullptr;
    if (count != bands.Count() || (bands.hasPalette && !hasPalette)) {
        throw DataSetError(Text::kBandsNotHeld, {format.Name()});
    }
}

}  // namespace kv_tr::gdal
