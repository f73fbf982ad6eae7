// Rasters through whole programs: ours and that of GDAL, with the same control points and options.
#include <benchmark/benchmark.h>

#include "samples.h"

#if defined(KV_TR_GDAL) && defined(KV_TR_GDALWARP)
#include <gdal_priv.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

namespace kv_tr::benchmarks {
namespace {

constexpr int kSide = 8000;

std::string NameOf(const char* file) {
    return (std::filesystem::temp_directory_path() / file).string();
}

/// Where a pixel of the scan lies, bent a little.
PlanePoint PlaceOf(double column, double line) {
    const double u = (column - kSide / 2.0) / kSide;
    const double v = (line - kSide / 2.0) / kSide;
    return {650000 + 2 * column + 0.3 * line + 30 * u * u - 20 * u * v + 15 * u * u * v,
            238000 - 2 * line + 0.3 * column + 25 * v * v + 10 * u * v - 12 * v * v * v};
}

/// A scan of one band with its control points, also as a file of QGIS.
class Scan {
public:
    Scan() {
        GDALAllRegister();
        const GDALDatasetUniquePtr scan(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
            raster.c_str(), kSide, kSide, 1, GDT_Byte, nullptr));
        std::vector<unsigned char> row(kSide);
        for (int line = 0; line < kSide; ++line) {
            for (int i = 0; i < kSide; ++i) row[i] = static_cast<unsigned char>(i * 7 + line * 13);
            if (scan->GetRasterBand(1)->RasterIO(GF_Write, 0, line, kSide, 1, row.data(), kSide, 1,
                                                 GDT_Byte, 0, 0, nullptr) != CE_None)
                std::abort();
        }
        std::vector<GDAL_GCP> gcps;
        std::ofstream list(points);
        list.precision(17);
        list << "mapX,mapY,sourceX,sourceY,enable\n";
        char none[] = "";
        for (int column = 0; column <= kSide; column += kSide / 5) {
            for (int line = 0; line <= kSide; line += kSide / 5) {
                const PlanePoint at = PlaceOf(column, line);
                gcps.push_back({none, none, 1.0 * column, 1.0 * line, at.first, at.second, 0});
                list << at.first << ',' << at.second << ',' << column << ',' << -line << ",1\n";
            }
        }
        scan->SetGCPs(static_cast<int>(gcps.size()), gcps.data(), "");
    }
    ~Scan() {
        for (const auto& file : {raster, points, result}) std::remove(file.c_str());
    }
    Scan(const Scan&) = delete;
    Scan& operator=(const Scan&) = delete;

    const std::string raster = NameOf("kv_tr_benchmark.tif");
    const std::string points = NameOf("kv_tr_benchmark.points");
    const std::string result = NameOf("kv_tr_benchmark_result.tif");
};

void WarpRaster(benchmark::State& state, bool ours, const std::string& options) {
    static const Scan scan;
    const std::string files =
        ours ? "--points " + scan.points + " " + scan.raster + " --output " + scan.result
             : scan.raster + " " + scan.result;
    const std::string line = options + " " + files + " >/dev/null";
    for (auto _ : state) {
        std::remove(scan.result.c_str());
        const auto start = std::chrono::steady_clock::now();
        if (std::system(line.c_str()) != 0) return state.SkipWithError("the program failed");
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(taken.count());
    }
    state.SetItemsProcessed(state.iterations() * kSide * kSide);
}

void RegisterPair(const std::string& work, const std::string& ours, const std::string& theirs) {
    const std::string common = KV_TR_PROGRAM " warp --type poly3 --pixels up --nodata 0 ";
    const std::string gdal = KV_TR_GDALWARP " -q -order 3 -dstnodata 0 ";
    using benchmark::RegisterBenchmark;
    RegisterBenchmark((work + "/kv_tr warp").c_str(), WarpRaster, true, common + ours)
        ->UseManualTime();
    RegisterBenchmark((work + "/gdalwarp").c_str(), WarpRaster, false, gdal + theirs)
        ->UseManualTime();
}

}  // namespace

void RegisterRasters() {
    RegisterPair("Pixels of a scan, order 3, no further options", "", "");
    RegisterPair("Pixels of a scan, order 3, one thread", "--threads 1",
                 "-et 0.125 -wo NUM_THREADS=1");
    RegisterPair("Pixels of a scan, order 3, cubic, two threads", "--threads 2 --resampling cubic",
                 "-et 0.125 -wo NUM_THREADS=2 -multi -r cubic");
    RegisterPair("Pixels of a scan, order 3, each computed", "--threads 1 --tolerance 0",
                 "-et 0 -wo NUM_THREADS=1");
}

}  // namespace kv_tr::benchmarks

#else

namespace kv_tr::benchmarks {

void RegisterRasters() {}

}  // namespace kv_tr::benchmarks

#endif
