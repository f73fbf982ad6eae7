// Transformations in the formats of other programs.
#pragma once

#include <string>
#include <variant>

#include "kv_tr/interchange/transformation_format.h"
#include "kv_tr/interchange/transformation_record.h"
#include "kv_tr/text/number_text.h"
#include "kv_tr/text/texts.h"

namespace kv_tr {

/// Why a format cannot hold a transformation.
enum class Refusal {
    kNotLinear,     ///< the format holds six parameters
    kNoSimilarity,  ///< the format holds one scale, a rotation and shifts
    kNotFinite,     ///< a number is not finite
    kUnnamedType,   ///< the number of the type stands for none
    kNoPlaces,      ///< two places are needed, and there is no hull
    kNoPoints,      ///< the control points are needed, and there are none
    kOtherAxes,     ///< the WKT of a system has other axes than the record
};

/// The text of a format, or why there is none.
using Exported = std::variant<std::string, Refusal>;

/// Writes a transformation in a format: UTF-8, lines end with LF. Nothing is ever approximated:
/// what the format cannot hold is refused.
///
/// Numbers are the shortest that read back to the same doubles, with a point; only formulas of a
/// spreadsheet, which are pasted into a program in the user's language, have the decimal sign of
/// the style. The axes of the record are obeyed where the format means map coordinates: PROJ gets
/// steps that swap, linear formats and points get their numbers in map coordinates. Formulas take
/// the coordinates of the record itself.
Exported ExportTransformation(const TransformationRecord& record, TransformationFormat format,
                              NumberStyle sheetStyle = {});

/// The reason as a sentence without its end, in a language.
std::string RefusalText(Refusal refusal, const Transformation& transformation,
                        TransformationFormat format, const TextLookup& texts);

}  // namespace kv_tr
