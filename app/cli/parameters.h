// Parameters from wherever the user says, and into files.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kv_tr/analysis/point_precision.h"
#include "kv_tr/interchange/transformation_record.h"
#include "kv_tr/model/point_map.h"
#include "kv_tr/published/ml_strings.h"

namespace CLI {
class App;
}

namespace kv_tr::cli {

/// Where parameters come from: one of points, params, national.
struct ParameterSource {
    std::string points;  // control-point file, to be fitted with the type
    std::string type;
    std::string params;  // parameter file
    std::string national;
    bool inverse = false;
    bool decimalComma = false;  // in the files
};

/// A transformation with what is known of it, and the domain of its control points if that is.
struct Parameters {
    TransformationRecord record;
    std::optional<Domain> domain;
};

/// Adds the options --points, --params, --national, --type and --decimal-comma.
void AddSourceOptions(CLI::App& command, ParameterSource& source);
/// Adds those of them that serve where the parameter file is an argument of its own.
void AddBuiltInOptions(CLI::App& command, ParameterSource& source);
void AddInverseOption(CLI::App& command, ParameterSource& source, Text description);

/// Loads or fits the parameters, without an inversion. The exit code: kReported after anything was
/// reported, and kWrongUsage, with a note, when the source is not one.
int LoadForward(Parameters& parameters, const ParameterSource& source);
/// The same, inverted if that is asked for, which is reported as impossible for types that are not
/// linear.
int LoadParameters(TransformationRecord& record, const ParameterSource& source);
/// The same for the transformation of points, whose inverse is exact for all types.
/// With a place for it, also how precise the images are, which only points can tell.
int LoadPointMap(PointMap& map, const ParameterSource& source,
                 std::shared_ptr<const PointPrecision>* precision = nullptr);

/// A transformation of points, and the axes of the systems that it goes from and to.
struct MapWithAxes {
    PointMap map;
    AxisMapping sourceAxes = AxisMapping::kEn;
    AxisMapping targetAxes = AxisMapping::kEn;
    std::shared_ptr<const PointPrecision> precision{};  // of points, without an inversion
};
/// LoadPointMap for data on maps. The words, unless empty, are the axes of both systems before an
/// inversion; otherwise those of the parameters count.
int LoadMapWithAxes(MapWithAxes& loaded, const ParameterSource& source, const std::string& axes);

/// A check for names of parameter files to be saved; it yields the complaint, or nothing.
std::string CheckExtension(const std::string& fileName);

/// Whether a format (trp, prm, all) can hold a type; otherwise the reason is shown under the name.
bool FormatHolds(const std::string& format, Type type, const std::string& name);

/// Saves a transformation in the format that the file's extension names; false after it was
/// reported that this is impossible.
bool SaveParameters(const Transformation& transformation, const std::string& fileName);

/// Writes a text file in the code page of the language; false after it was reported that this is
/// impossible.
bool SaveText(const std::string& fileName, const std::string& text);
/// The same with the bytes as they are.
bool SaveBytes(const std::string& fileName, std::string_view bytes);

}  // namespace kv_tr::cli
