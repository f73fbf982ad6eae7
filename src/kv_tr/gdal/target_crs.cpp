// The coordinate reference system that a result is said to be in.
#include "kv_tr/gdal/target_crs.h"

#include <cpl_conv.h>
#include <ogr_spatialref.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "kv_tr/gdal/gdal_errors.h"
#include "kv_tr/gdal/work.h"
#include "kv_tr/text/paths.h"

namespace kv_tr::gdal {
namespace {

constexpr std::uintmax_t kLongestFile = 1 << 20;

/// What a file of that name holds, or the text itself.
std::string ContentOf(const std::string& text) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(PathOf(text), error)) return text;
    if (std::filesystem::file_size(PathOf(text), error) > kLongestFile) return {};
    std::ifstream stream = OpenToRead(PathOf(text));
    std::string content{std::istreambuf_iterator(stream), {}};
    if (content.starts_with("\xEF\xBB\xBF")) content.erase(0, 3);
    content.erase(content.find_last_not_of(" \t\r\n") + 1);
    content.erase(0, content.find_first_not_of(" \t\r\n"));
    return content;
}

}  // namespace

TargetCrs ReadTargetCrs(const std::string& text) {
    if (text.empty() || text == "none") return {};
    const ErrorLog errors;
    OGRSpatialReference system;
    constexpr std::array<const char*, 3> kNoMoreFiles{"ALLOW_NETWORK_ACCESS=NO",
                                                      "ALLOW_FILE_ACCESS=NO", nullptr};
    if (system.SetFromUserInput(ContentOf(text).c_str(), kNoMoreFiles.data()) != OGRERR_NONE) {
        throw DataSetError(Text::kUnknownCrs, {text, errors.Cause()});
    }
    constexpr std::array<const char*, 2> kWkt2{"FORMAT=WKT2_2019", nullptr};
    char* wkt = nullptr;
    system.exportToWkt(&wkt, kWkt2.data());
    TargetCrs result{.wkt = wkt == nullptr ? "" : wkt};
    CPLFree(wkt);
    if (!result.IsStated()) throw DataSetError(Text::kUnknownCrs, {text, errors.Cause()});
    return result;
}

}  // namespace kv_tr::gdal
