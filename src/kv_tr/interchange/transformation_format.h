// The formats that a transformation can be given to other programs in.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "kv_tr/text/text_id.h"

namespace kv_tr {

/// A format of other programs. docs/file-formats.md describes each.
enum class TransformationFormat {
    kJson,          ///< the record, all that is known
    kProj,          ///< PROJ: affine or horner, with a pipeline where axes must be swapped
    kProjHelmert,   ///< PROJ: helmert, for similarities
    kWkt2,          ///< WKT 2: an operation between two systems, or its method and parameters
    kWorldFile,     ///< beside a picture: six numbers, six lines
    kGeotransform,  ///< GDAL's six numbers of a picture
    kCadWorldFile,  ///< beside a drawing: two points in both systems
    kGdalGcps,      ///< an option file of GDAL with the control points
    kSpreadsheet,   ///< formulas of cells
    kC,
    kPython,
    kSql,
    kFormulas,  ///< formulas to read
};

std::span<const TransformationFormat> TransformationFormats();

/// The word that programs call a format by: json, proj, proj-helmert, wkt2, world, geotransform,
/// cad-world, gcps, sheet, c, python, sql, formulas.
std::string_view FormatWord(TransformationFormat format);
std::optional<TransformationFormat> FormatOfWord(std::string_view word);
/// All words, as "json, proj, ...".
std::string FormatWords();
/// What users call the format.
Text FormatName(TransformationFormat format);

}  // namespace kv_tr
