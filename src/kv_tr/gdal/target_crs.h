// The coordinate reference system that a result is said to be in.
#pragma once

#include <string>

namespace kv_tr::gdal {

/// A system that a user stated, or none. A transformation takes coordinates out of the system of
/// the source, so that a result has no other system than the one that is stated.
struct TargetCrs {
    std::string wkt{};  ///< WKT 2, UTF-8; empty for none

    bool IsStated() const { return !wkt.empty(); }
};

/// The system of a code such as EPSG:23700, a WKT, a PROJ string, PROJJSON or a file with one of
/// these; "none" and the empty text are none. DataSetError for anything else.
TargetCrs ReadTargetCrs(const std::string& text);

}  // namespace kv_tr::gdal
