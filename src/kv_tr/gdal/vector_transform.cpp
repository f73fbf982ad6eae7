// Layers of features, transformed whole.
#include "kv_tr/gdal/vector_transform.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <utility>

#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/gdal/vector_copy.h"
#include "kv_tr/gdal/vector_formats.h"
#include "kv_tr/gdal/vector_geometry.h"
#include "kv_tr/gdal/vector_layer.h"
#include "kv_tr/gdal/written_beside.h"

namespace kv_tr::gdal {
namespace fs = std::filesystem;
namespace {

/// While it lives, GDAL's databases need not wait for the disk, since the files are new and are
/// written through to the disk when they are complete; and they have memory for their indices.
class DatabaseSettings {
public:
    DatabaseSettings() {
        for (const auto& [name, value] : kSettings) CPLSetThreadLocalConfigOption(name, value);
    }
    ~DatabaseSettings() {
        for (const auto& [name, value] : kSettings) CPLSetThreadLocalConfigOption(name, nullptr);
    }
    DatabaseSettings(const DatabaseSettings&) = delete;
    DatabaseSettings& operator=(const DatabaseSettings&) = delete;

private:
    static constexpr std::array<std::pair<const char*, const char*>, 2> kSettings{
        {{"OGR_SQLITE_SYNCHRONOUS", "OFF"}, {"OGR_SQLITE_CACHE", "256"}}};  // MB at the most
};

struct ReleaseSystem {
    void operator()(OGRSpatialReference* system) const { system->Release(); }
};
using System = std::unique_ptr<OGRSpatialReference, ReleaseSystem>;

constexpr std::string_view kUndefined = "Undefined ";  // systems of GeoPackages that are none

/// The system that a format is to state. A GeoPackage would take none for degrees.
System SystemOf(const TargetCrs& crs, GDALDriver& driver) {
    if (!crs.IsStated() && !IsDriver(driver, "GPKG")) return nullptr;
    const char* undefined = R"(LOCAL_CS["Undefined Cartesian SRS"])";
    System system(new OGRSpatialReference(crs.IsStated() ? crs.wkt.c_str() : undefined));
    system->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);  // x is the easting
    return system;
}

/// A layer's name as the name of a file that there is not yet among the others.
std::string FileNameOf(const std::string& layer, std::set<std::string>& taken) {
    std::string name;
    for (const char c : layer) {
        const bool isUnsuitable = static_cast<unsigned char>(c) < ' ' ||
                                  std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos;
        name += isUnsuitable ? '_' : c;
    }
    if (name.empty() || name.front() == '.') name.insert(0, "_");
    while (!taken.insert(name).second) name += '_';
    return name;
}

/// Whether a data set holds rasters beside its layers, as GeoPackages may.
bool HoldsRasters(GDALDataset& set) {
    const ErrorLog errors;
    const std::array<const char*, 2> drivers{set.GetDriver()->GetDescription(), nullptr};
    return Dataset(GDALDataset::Open(set.GetDescription(), GDAL_OF_RASTER, drivers.data())) !=
           nullptr;
}

class Work {
public:
    Work(const VectorRequest& request, const MapOnMaps& map, const Progress& progress)
        : request_(request),
          map_(map),
          progress_(progress),
          source_(OpenLayers(request.source)),
          driver_(DriverNamed(request.format, request.target)),
          system_(SystemOf(request.crs, driver_)),
          plan_{.source = request.source.string(),
                .sourceDriver = source_->GetDriver(),
                .driver = &driver_,
                .system = system_.get(),
                .keepsCurves = KeepsCircles(map.map)} {
        result_.target = request.target;
    }

    VectorResult Run() {
        const auto count = static_cast<std::size_t>(source_->GetLayerCount());
        const bool divides = HoldsOneLayer(driver_) && count > 1;
        if (divides) ChooseFolder(count);
        RefuseOwnFiles();
        LookAtLayers();
        CountFeatures();
        WrittenBeside written(result_.target, request_.replaces);
        if (request_.replaces) written.Supersede(FilesOf(written.Target()));
        if (divides) {
            written.MergeFolders();
            WriteFolder(written.Path());
        } else {
            std::vector<OGRLayer*> layers;
            for (auto* layer : source_->GetLayers()) layers.push_back(layer);
            WriteFile(written.Path(), layers);
        }
        Tell(progress_, 1);
        written.Commit();
        return std::move(result_);
    }

private:
    void ChooseFolder(std::size_t count) {
        if (!request_.mayBeFolder) {
            throw DataSetError(
                Text::kOneLayerOnly,
                {request_.target.string(), driver_.GetDescription(), std::to_string(count)});
        }
        result_.target.replace_extension();
    }

    void RefuseOwnFiles() const {
        char** files = source_->GetFileList();
        std::error_code error;
        const bool isOwn = std::any_of(files, files + CSLCount(files), [&](const char* file) {
            return fs::equivalent(file, result_.target, error);
        });
        CSLDestroy(files);
        if (isOwn || fs::equivalent(request_.source, result_.target, error)) {
            throw DataSetError(Text::kInputIsOutput, {result_.target.string()});
        }
    }

    void LookAtLayers() {
        bool hadSystem = false;
        bool hasGeometries = false;
        for (auto* layer : source_->GetLayers()) {
            const auto* system = layer->GetSpatialRef();
            hadSystem = hadSystem || (system != nullptr && system->GetName() != nullptr &&
                                      !std::string_view(system->GetName()).starts_with(kUndefined));
            hasGeometries = hasGeometries || layer->GetLayerDefn()->GetGeomFieldCount() > 0;
        }
        if (!hasGeometries && !request_.mayBeTable) {
            throw DataSetError(Text::kNoGeometries, {plan_.source});
        }
        if (!request_.crs.IsStated() && hadSystem) {
            result_.remarks.push_back({Text::kCrsDropped, {plan_.source}});
        }
        if (HoldsRasters(*source_)) {
            result_.remarks.push_back({Text::kPagesLeftOut, {plan_.source}});
        }
        if (MeansDegrees(driver_)) {
            result_.remarks.push_back(
                {Text::kDegreesExpected, {result_.target.string(), driver_.GetDescription()}});
        }
    }

    /// Where that costs nothing; otherwise the progress goes by layers.
    void CountFeatures() {
        for (auto* layer : source_->GetLayers()) {
            const auto count = layer->GetFeatureCount(FALSE);
            expected_ += count < 0 ? 0 : static_cast<std::size_t>(count);
        }
    }

    void WriteFolder(const fs::path& folder) {
        fs::create_directory(folder);
        std::set<std::string> taken;
        for (auto* layer : source_->GetLayers()) {
            WriteFile(folder / (FileNameOf(layer->GetName(), taken) + EndingOf(driver_)), {layer});
        }
    }

    void WriteFile(const fs::path& path, const std::vector<OGRLayer*>& layers) {
        const DatabaseSettings settings;
        const ErrorLog errors;
        const std::size_t before = result_.features - result_.leftOut;
        Dataset target(driver_.Create(path.string().c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        if (!target) throw NotWritten(errors);
        CopyDataSet(*target);
        for (OGRLayer* layer : layers) {
            const ErrorLog ofLayer;
            LikeLayer like(*layer, *target, plan_, [this](DataSetError remark) {
                result_.remarks.push_back(std::move(remark));
            });
            const bool inTransaction = target->TestCapability(ODsCTransactions) != 0 &&
                                       target->StartTransaction() == OGRERR_NONE;
            CopyFeatures(*layer, like);
            if (inTransaction && target->CommitTransaction() != OGRERR_NONE)
                throw NotWritten(ofLayer);
            if (!ofLayer.Failures().empty()) throw NotWritten(ofLayer);
            for (const std::string& warning : ofLayer.Warnings()) {
                result_.remarks.push_back({Text::kGdalSays, {plan_.source, warning}});
            }
            ++result_.layers;
        }
        target->FlushCache(true);
        target.reset();
        if (!errors.Failures().empty()) throw NotWritten(errors);
        if (!ChecksItsWriting(driver_)) Check(path, result_.features - result_.leftOut - before);
    }

    /// Whether a file holds all features; some formats do not notice that a disk is full.
    void Check(const fs::path& path, std::size_t features) const {
        const ErrorLog errors;
        const Dataset written(GDALDataset::Open(path.string().c_str(), GDAL_OF_VECTOR));
        std::size_t found = 0;
        if (written) {
            for (auto* layer : written->GetLayers()) {
                found += static_cast<std::size_t>(layer->GetFeatureCount());
            }
        }
        if (found == features) return;
        throw DataSetError(
            Text::kTargetNotWritable,
            {result_.target.string(), std::make_error_code(std::errc::io_error).message()});
    }

    DataSetError NotWritten(const ErrorLog& errors) const {
        return {Text::kTargetNotWritable, {result_.target.string(), CauseOf(errors)}};
    }

    void CopyFeatures(OGRLayer& layer, LikeLayer& like) {
        LayerCopy copy(layer, like, plan_, request_, map_, result_);
        copy.Run([this](std::size_t features) {
            const double share = static_cast<double>(features) / static_cast<double>(expected_);
            Tell(progress_, expected_ > 0 ? std::min(share, 1.0) : 0);
        });
        if (copy.LostMeasures()) {
            result_.remarks.push_back({Text::kMeasuresLeftOut,
                                       {plan_.source, layer.GetName(), driver_.GetDescription()}});
        }
    }

    /// What belongs to the data set and to none of its layers.
    void CopyDataSet(GDALDataset& target) {
        const ErrorLog errors;
        target.SetStyleTable(source_->GetStyleTable());
        if (char** items = source_->GetMetadata(); CSLCount(items) > 0) target.SetMetadata(items);
        for (const std::string& name : source_->GetFieldDomainNames()) {
            const OGRFieldDomain* domain = source_->GetFieldDomain(name);
            std::string reason;
            if (domain == nullptr ||
                !target.AddFieldDomain(std::unique_ptr<OGRFieldDomain>(domain->Clone()), reason)) {
                result_.remarks.push_back({Text::kDomainLeftOut, {plan_.source, name, reason}});
            }
        }
    }

    const VectorRequest& request_;
    const MapOnMaps& map_;
    const Progress& progress_;
    const Dataset source_;
    GDALDriver& driver_;
    const System system_;
    const LayerPlan plan_;
    std::size_t expected_ = 0;
    VectorResult result_;
};

}  // namespace

std::string LayerFormatOf(const fs::path& path) {
    RegisterDrivers();
    const ErrorLog errors;
    auto* driver = static_cast<GDALDriver*>(
        GDALIdentifyDriverEx(path.string().c_str(), GDAL_OF_VECTOR, nullptr, nullptr));
    return driver == nullptr ? "" : driver->GetDescription();
}

fs::path NameInFormat(const fs::path& source, const std::string& format) {
    const fs::path name = source.filename();
    const std::string own = LayerFormatOf(source);
    GDALDriver& driver = DriverNamed(format.empty() ? own : format, source);
    const bool staysSo = IsDriver(driver, own.c_str()) && name.has_extension();
    return staysSo ? name : fs::path(name).replace_extension(EndingOf(driver));
}

std::vector<fs::path> FilesOf(const fs::path& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return {};
    RegisterDrivers();
    const ErrorLog errors;
    std::vector<fs::path> files{path};
    const Dataset set(GDALDataset::Open(path.string().c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
    if (!set) return files;
    char** list = set->GetFileList();
    for (int i = 0; i < CSLCount(list); ++i) {
        if (!fs::equivalent(list[i], path, error)) files.emplace_back(list[i]);
    }
    CSLDestroy(list);
    return files;
}

VectorResult TransformLayers(const VectorRequest& request, const MapOnMaps& map,
                             const Progress& progress) {
    return Work(request, map, progress).Run();
}

}  // namespace kv_tr::gdal
