// Layers: a GeoPackage of polygons through whole programs.
#include "samples.h"

#if defined(KV_TR_HAS_GDAL) && defined(KV_TR_OGR2OGR)

#include <benchmark/benchmark.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>

#include "kv_tr/model/national.h"

namespace kv_tr::benchmarks {
namespace {

constexpr std::size_t kPolygons = 300000;
constexpr int kCorners = 12;

/// A folder with a GeoPackage of polygons of 12 corners, a number and a name each.
class PolygonFile {
public:
    PolygonFile() {
        std::filesystem::create_directories(folder_);
        GDALAllRegister();
        auto* driver = GetGDALDriverManager()->GetDriverByName("GPKG");
        auto* set = driver->Create(Source().c_str(), 0, 0, 0, GDT_Unknown, nullptr);
        set->StartTransaction();
        OGRLayer* layer = set->CreateLayer("polygons", nullptr, wkbPolygon);
        OGRFieldDefn number("number", OFTInteger);
        OGRFieldDefn name("name", OFTString);
        layer->CreateField(&number);
        layer->CreateField(&name);
        for (std::size_t i = 0; i < kPolygons; ++i) AddPolygon(*layer, i);
        set->CommitTransaction();
        GDALClose(set);
    }
    ~PolygonFile() { std::filesystem::remove_all(folder_); }
    PolygonFile(const PolygonFile&) = delete;
    PolygonFile& operator=(const PolygonFile&) = delete;

    std::string Source() const { return (folder_ / "in.gpkg").string(); }
    std::string Target() const { return (folder_ / "out.gpkg").string(); }

private:
    static void AddPolygon(OGRLayer& layer, std::size_t i) {
        const PlanePoint centre = Point(i);
        OGRLinearRing ring;
        for (int corner = 0; corner <= kCorners; ++corner) {
            const double angle = 2.0 * M_PI * (corner % kCorners) / kCorners;
            ring.addPoint(centre.first - 600000.0 + 30.0 * std::cos(angle),
                          centre.second - 200000.0 + 30.0 * std::sin(angle));
        }
        OGRPolygon polygon;
        polygon.addRing(&ring);
        OGRFeature feature(layer.GetLayerDefn());
        feature.SetField(0, static_cast<int>(i));
        feature.SetField(1, ("parcel " + std::to_string(i)).c_str());
        feature.SetGeometry(&polygon);
        if (layer.CreateFeature(&feature) != OGRERR_NONE) std::abort();
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / "kv_tr_benchmark_layers";
};

/// A command that writes the target from the source; its time is the wall clock's.
void Layers(benchmark::State& state, const std::string& before, const std::string& after) {
    static const PolygonFile file;
    const std::string line =
        before + " " + file.Source() + " " + after + " " + file.Target() + " >/dev/null 2>&1";
    for (auto _ : state) {
        std::filesystem::remove(file.Target());
        const auto start = std::chrono::steady_clock::now();
        if (std::system(line.c_str()) != 0) return state.SkipWithError("the program failed");
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(taken.count());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kPolygons));
}

}  // namespace

void RegisterLayers() {
    const std::string pipeline = ProjText(RecordOf(*NationalTransformation(Type::kStgToEov10e)));
    benchmark::RegisterBenchmark("Polygons of a GeoPackage/kv_tr", Layers,
                                 KV_TR_PROGRAM " transform", "--national STG_EOV_10e --output")
        ->UseManualTime();
    // The target comes before the source here.
    benchmark::RegisterBenchmark(
        "Polygons of a GeoPackage/ogr2ogr -ct",
        [pipeline](benchmark::State& state) {
            Layers(state,
                   "f() { " KV_TR_OGR2OGR " -ct \"" + pipeline +
                       "\" -s_srs EPSG:23700 -t_srs EPSG:23700 \"$2\" \"$1\"; }; f",
                   "");
        })
        ->UseManualTime();
}

}  // namespace kv_tr::benchmarks

#else

namespace kv_tr::benchmarks {

void RegisterLayers() {}

}  // namespace kv_tr::benchmarks

#endif
