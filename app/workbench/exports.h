// What a project gives to others: parameters in every format, points, residuals, log and report.
#pragma once

#include <string>
#include <vector>

#include "kv_tr/files/report.h"
#include "kv_tr/interchange/point_formats.h"
#include "kv_tr/interchange/transformation_format.h"
#include "kv_tr/interchange/transformation_record.h"
#include "workbench/document.h"

namespace kv_tr::workbench {

/// A text for others, or why there is none; and what the text lacks.
struct Offered {
    std::string name{};  ///< what users call it
    std::string text{};
    std::string reason{};               ///< empty where there is a text
    std::vector<std::string> losses{};  ///< a sentence each
    std::string ending{};               ///< that file names usually have, without a point
    bool isInCodePage = false;          ///< whether files have the letters of listings and logs

    bool IsAvailable() const { return reason.empty(); }
};

/// The transformation with all that is known about it.
TransformationRecord RecordOf(Document& document);

/// The fitted transformation in a format.
Offered Exported(Document& document, TransformationFormat format);
/// The same in every format, in the order in which menus list them.
std::vector<Offered> AllExported(Document& document);

/// The points with their marks, standard deviations and residuals, as far as the format has them.
Offered PointsAs(Document& document, PointFormat format);
/// Lines from the measured to the computed places, enlarged so that they can be seen, as GeoJSON.
Offered ResidualVectors(Document& document);
/// The log of the fit.
Offered Log(Document& document);

/// The report of the fit on a day, with the notes on excluded points.
Report ReportOn(Document& document, const std::string& day);

/// Why parameters should not be given to others, from the strip; empty when they may.
std::string Objection(Document& document);

/// Saves what is offered under a name; what went wrong in words, or nothing.
std::string Save(const Offered& offered, const std::string& fileName);

}  // namespace kv_tr::workbench
