// Rasters transformed whole.
#include "kv_tr/gdal/raster_warp.h"

#include <gdal_alg.h>
#include <gdal_priv.h>
#include <gdalwarper.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/gdal/raster_target.h"
#include "kv_tr/gdal/raster_transformer.h"
#include "kv_tr/gdal/written_beside.h"
#include "kv_tr/model/fold.h"

namespace kv_tr::gdal {
namespace fs = std::filesystem;
namespace {

struct Resampling {
    std::string_view name;
    GDALResampleAlg algorithm;
    const char* ofOverviews;
    bool keepsCodes;  // makes no value that no pixel has
};
constexpr std::array kResamplings{
    Resampling{"nearest", GRA_NearestNeighbour, "NEAREST", true},
    Resampling{"bilinear", GRA_Bilinear, "BILINEAR", false},
    Resampling{"cubic", GRA_Cubic, "CUBIC", false},
    Resampling{"cubicspline", GRA_CubicSpline, "CUBICSPLINE", false},
    Resampling{"lanczos", GRA_Lanczos, "LANCZOS", false},
    Resampling{"average", GRA_Average, "AVERAGE", false},
    Resampling{"rms", GRA_RMS, "RMS", false},
    Resampling{"mode", GRA_Mode, "MODE", true},
    Resampling{"min", GRA_Min, "NEAREST", false},
    Resampling{"max", GRA_Max, "NEAREST", false},
    Resampling{"med", GRA_Med, "NEAREST", false},
    Resampling{"q1", GRA_Q1, "NEAREST", false},
    Resampling{"q3", GRA_Q3, "NEAREST", false},
    Resampling{"sum", GRA_Sum, "NEAREST", false},
};

/// What somebody who watches is told of, in parts of the whole; remembers whether the end was asked
/// for, which GDAL reports as a failure like any other.
class Watch {
public:
    explicit Watch(const Progress& progress) : progress_(progress) {}

    /// From where the last part ended to this share of the whole.
    Progress Until(double end) {
        const double begin = std::exchange(end_, end);
        return [this, begin, end](double done) {
            if (progress_ && !progress_(begin + (end - begin) * done)) ended_ = true;
            return !ended_;
        };
    }
    void ThrowIfEnded() const {
        if (ended_) throw Cancelled();
    }

private:
    const Progress& progress_;
    double end_ = 0;
    std::atomic<bool> ended_ = false;
};

struct TransformerEnd {
    void operator()(void* transformer) const { GDALDestroyTransformer(transformer); }
};
using TransformerHandle = std::unique_ptr<void, TransformerEnd>;

struct OptionsEnd {
    void operator()(GDALWarpOptions* options) const { GDALDestroyWarpOptions(options); }
};
using WarpOptions = std::unique_ptr<GDALWarpOptions, OptionsEnd>;

GDALDatasetUniquePtr Open(const std::string& name) {
    const ErrorLog errors;
    GDALDatasetUniquePtr source(
        GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    if (source == nullptr) throw DataSetError(Text::kNotADataSet, {name, errors.Cause()});
    if (source->GetRasterCount() == 0) throw DataSetError(Text::kNoBands, {name});
    return source;
}

/// No file of the source may be replaced.
void CheckOutput(GDALDataset& source, const RasterJob& job) {
    const CPLStringList files(source.GetFileList());
    std::error_code error;
    for (int i = 0; i < files.Count(); ++i) {
        if (fs::equivalent(files[i], job.output, error)) {
            throw DataSetError(Text::kInputIsOutput, {job.output.string()});
        }
    }
}

GeoTransform PlaceOf(GDALDataset& source, const RasterJob& job) {
    GeoTransform place{0, 1, 0, 0, 0, 1};
    if (job.sourceCoordinates == SourceCoordinates::kLinesUp) place[5] = -1;
    if (job.sourceCoordinates == SourceCoordinates::kOnMap &&
        source.GetGeoTransform(place.data()) != CE_None) {
        throw DataSetError(Text::kNotGeoreferenced, {job.input});
    }
    return place;
}

/// Places all over the source, in its system.
std::vector<Point> PlacesOf(const RasterMapping& mapping, GDALDataset& source) {
    constexpr int kSteps = 20;
    std::vector<double> pairs;
    for (int i = 0; i <= kSteps; ++i) {
        for (int j = 0; j <= kSteps; ++j) {
            pairs.insert(pairs.end(), {1.0 * source.GetRasterXSize() * j / kSteps,
                                       1.0 * source.GetRasterYSize() * i / kSteps});
        }
    }
    mapping.ToSource(pairs);
    std::vector<Point> places;
    for (std::size_t i = 0; i < pairs.size(); i += 2) places.push_back({pairs[i], pairs[i + 1]});
    return places;
}

void Examine(const RasterMapping& mapping, GDALDataset& source, const RasterJob& job,
             RasterResult& result) {
    const auto places = PlacesOf(mapping, source);
    if (const auto* forward = std::get_if<Transformation>(&mapping.Forward().map)) {
        const Fold fold = FindFold(*forward, places, places[places.size() / 2]);
        if (fold.folding == Folding::kFolds) result.fold = fold.place;
    }
    result.isFarFromPoints =
        job.controlPoints && std::ranges::none_of(places, [&](const Point& place) {
            return job.controlPoints->Contains(place);
        });
}

double* ValuesOf(const std::vector<std::optional<double>>& noData) {
    constexpr double kNeverThere = -1.1e20;  // what GDAL's own programs take for none
    if (std::ranges::none_of(noData, [](const auto& value) { return value.has_value(); })) {
        return nullptr;
    }
    auto* values = static_cast<double*>(CPLMalloc(sizeof(double) * noData.size()));
    for (std::size_t i = 0; i < noData.size(); ++i) values[i] = noData[i].value_or(kNeverThere);
    return values;
}

int ThreadsOf(const RasterJob& job) {
    const auto all = static_cast<int>(std::thread::hardware_concurrency());
    return job.threads > 0 ? job.threads : std::max(1, all);
}

WarpOptions OptionsFor(const RasterJob& job, const RasterBands& bands,
                       const Resampling& resampling) {
    WarpOptions options(GDALCreateWarpOptions());
    options->eResampleAlg = resampling.algorithm;
    options->dfWarpMemoryLimit = job.megabytes * 1e6;
    options->nBandCount = static_cast<int>(bands.numbers.size());
    const std::size_t bytes = sizeof(int) * bands.numbers.size();
    options->panSrcBands = static_cast<int*>(CPLMalloc(bytes));
    options->panDstBands = static_cast<int*>(CPLMalloc(bytes));
    std::ranges::copy(bands.numbers, options->panSrcBands);
    std::ranges::copy(bands.numbers, options->panDstBands);
    options->nSrcAlphaBand = bands.sourceAlpha;
    options->nDstAlphaBand = bands.targetAlpha;
    options->padfSrcNoDataReal = ValuesOf(bands.noData);
    options->padfDstNoDataReal = ValuesOf(bands.targetNoData);
    const auto set = [&](const char* name, const char* value) {
        options->papszWarpOptions = CSLSetNameValue(options->papszWarpOptions, name, value);
    };
    set("NUM_THREADS", std::to_string(ThreadsOf(job)).c_str());
    set("INIT_DEST", bands.targetAlpha == 0 ? "NO_DATA" : "0");
    // A colour of which one part alone has the value of no data is a colour.
    if (bands.isColour) set("UNIFIED_SRC_NODATA", "YES");
    if (!job.compression.empty()) set("OPTIMIZE_SIZE", "YES");
    return options;
}

void Warp(GDALDataset& source, GDALDataset& target, const RasterJob& job, const RasterBands& bands,
          const Resampling& resampling, const std::shared_ptr<const RasterMapping>& mapping,
          const RasterResult& found, Progress progress, const ErrorLog& errors) {
    const auto options = OptionsFor(job, bands, resampling);
    options->hSrcDS = GDALDataset::ToHandle(&source);
    options->hDstDS = GDALDataset::ToHandle(&target);
    options->pfnProgress = TellOfGdal;
    options->pProgressArg = &progress;
    TransformerHandle transformer(NewPixelTransformer(mapping, found.grid.Place()));
    options->pfnTransformer = TransformPixels;
    if (job.tolerance > 0 && !found.fold) {  // between places on both sides of a fold is nothing
        void* exact = transformer.release();
        transformer.reset(GDALCreateApproxTransformer(TransformPixels, exact, job.tolerance));
        GDALApproxTransformerOwnsSubtransformer(transformer.get(), TRUE);
        options->pfnTransformer = GDALApproxTransform;
    }
    options->pTransformerArg = transformer.get();

    GDALWarpOperation operation;
    // In this thread, where its complaints are heard; the pixels are computed in several.
    const bool done =
        operation.Initialize(options.get()) == CE_None &&
        operation.ChunkAndWarpImage(0, 0, found.grid.columns, found.grid.lines) == CE_None;
    if (!done || !errors.Failures().empty()) {
        throw DataSetError(Text::kRasterNotMade, {job.input, job.output.string(), errors.Cause()});
    }
}

void AddOverviews(GDALDataset& target, const Resampling& resampling, Progress progress,
                  const RasterJob& job, const ErrorLog& errors) {
    constexpr int kSmallest = 256;
    std::vector<int> factors;
    const int longer = std::max(target.GetRasterXSize(), target.GetRasterYSize());
    for (int factor = 2; longer / (factor / 2) > kSmallest; factor *= 2) factors.push_back(factor);
    if (factors.empty()) return;
    if (target.BuildOverviews(resampling.ofOverviews, static_cast<int>(factors.size()),
                              factors.data(), 0, nullptr, TellOfGdal, &progress,
                              nullptr) != CE_None) {
        throw DataSetError(Text::kTargetNotWritable, {job.output.string(), errors.Cause()});
    }
}

/// What GDAL writes at the end may fail as well.
void Close(GDALDatasetUniquePtr& target, const RasterJob& job, const ErrorLog& errors) {
    target.reset();
    if (!errors.Failures().empty()) {
        throw DataSetError(Text::kTargetNotWritable, {job.output.string(), errors.Cause()});
    }
}

/// A raster for a driver that cannot write pixels one by one is made in a file of GDAL's own.
void CopyTo(const fs::path& path, GDALDatasetUniquePtr& target, const RasterFormat& format,
            Progress progress, const ErrorLog& errors) {
    GDALDatasetUniquePtr copy(format.driver->CreateCopy(
        path.string().c_str(), target.get(), TRUE, format.options.List(), TellOfGdal, &progress));
    if (copy == nullptr) throw DataSetError(Text::kRasterNotHeld, {format.Name(), errors.Cause()});
    target = std::move(copy);
}

}  // namespace

std::string Resamplings() {
    std::string names;
    for (const Resampling& row : kResamplings) {
        names += (names.empty() ? "" : ", ") + std::string(row.name);
    }
    return names;
}

RasterResult WarpRaster(const RasterJob& job, const Progress& progress) {
    RegisterDrivers();
    const auto* resampling = std::ranges::find(kResamplings, job.resampling, &Resampling::name);
    if (resampling == kResamplings.end()) {
        throw DataSetError(Text::kUnknownValue, {job.resampling, Resamplings()});
    }
    const RasterFormat format = FormatOf(job);
    const auto source = Open(job.input);
    CheckOutput(*source, job);
    const auto bands = BandsOf(*source, job.noData);
    if (bands.hasPalette && !resampling->keepsCodes) {
        throw DataSetError(Text::kPaletteKeepsCodes, {job.input, job.resampling});
    }
    const int columns = source->GetRasterXSize();
    const int lines = source->GetRasterYSize();
    const auto mapping =
        std::make_shared<const RasterMapping>(job.map, PlaceOf(*source, job), columns, lines);
    RasterResult result{.format = format.Name(), .hasAlpha = bands.targetAlpha != 0};
    Examine(*mapping, *source, job, result);
    result.grid = MakeGrid(*mapping, columns, lines, job.grid);

    WrittenBeside beside(job.output, job.replaces);
    fs::path work = beside.Path();
    RasterFormat workFormat = format;
    if (!format.Creates()) {
        work += ".work.tif";
        workFormat.driver = GetGDALDriverManager()->GetDriverByName("GTiff");
        workFormat.options = CPLStringList();
        workFormat.options.AddString("TILED=YES");
    }
    Watch watch(progress);
    const ErrorLog errors;
    try {
        auto target = CreateTarget(workFormat, work, result.grid, bands, job.crs, *source, errors);
        const double overviewShare = job.overviews ? 0.25 : 0;
        const double copyShare = format.Creates() ? 0 : 0.25;
        Warp(*source, *target, job, bands, *resampling, mapping, result,
             watch.Until(1 - overviewShare - copyShare), errors);
        if (!format.Creates()) {
            CopyTo(beside.Path(), target, format, watch.Until(1 - overviewShare), errors);
        }
        if (job.overviews) AddOverviews(*target, *resampling, watch.Until(1), job, errors);
        Close(target, job, errors);
    } catch (const DataSetError&) {
        watch.ThrowIfEnded();
        throw;
    }
    if (!format.Creates()) {
        fs::remove(work);
        fs::remove(work += ".aux.xml");
    }
    CheckWritten(beside.Path(), format, bands);
    std::vector<fs::path> members;
    for (const char* added : {".ovr", ".aux.xml", ".msk", ".msk.ovr"}) {
        members.emplace_back(job.output.string() + added);
    }
    beside.Supersede(members);
    beside.Commit();
    result.warnings = errors.Warnings();
    return result;
}

}  // namespace kv_tr::gdal
