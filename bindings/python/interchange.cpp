// Transformations in the formats of other programs, for Python.
#include <pybind11/stl.h>

#include <tuple>

#include "kv_tr/interchange/transformation_export.h"
#include "kv_tr/interchange/transformation_import.h"
#include "python/binding.h"
#include "python/files.h"
#include "python/fitted_points.h"
#include "python/transformation.h"

namespace kv_tr::python {
namespace {

TransformationFormat FormatFrom(const std::string& word) {
    const auto format = FormatOfWord(word);
    if (!format) throw py::value_error("format must be one of " + FormatWords() + ", not " + word);
    return *format;
}

std::string TextOf(const KnownTransformation& self, const std::string& word,
                   const std::string& axes, const std::string& sourceCrs,
                   const std::string& targetCrs) {
    const TransformationFormat format = FormatFrom(word);
    auto record = self.origin ? FittedRecord(self.origin->Points(), self)
                              : TransformationRecord{.transformation = self};
    std::tie(record.sourceAxes, record.targetAxes) = AxesFrom(axes);
    record.sourceCrs = sourceCrs;
    record.targetCrs = targetCrs;
    const auto exported = ExportTransformation(record, format);
    if (const auto* refusal = std::get_if<Refusal>(&exported))
        throw py::value_error(RefusalText(*refusal, self, format, TextsIn(kEnglish)));
    return std::get<std::string>(exported);
}

KnownTransformation FromText(const std::string& text, const std::optional<std::string>& word,
                             const py::object& kind) {
    const auto format = word ? FormatFrom(*word) : FormatOfText(text);
    if (!format) {
        throw py::value_error("the text shows no format: say which, for example 'world'");
    }
    std::optional<Type> wanted;
    if (!kind.is_none()) wanted = Converted<Type>(kind, "type", "a word or a Type");
    const bool linear = wanted && !IsPolynomial(*wanted);
    std::optional<ImportedTransformation> read;
    try {
        read = ReadTransformation(text, *format, linear ? *wanted : Type::kAffine);
    } catch (const std::invalid_argument&) {
        throw py::value_error(*word + " is a format that is only written");
    }
    if (read->problem) throw py::value_error(ProblemText(*read->problem, TextsIn(kEnglish)));
    const Transformation& transformation = read->record.transformation;
    const auto& hull = read->record.hull;
    if (wanted && *wanted != transformation.type) {
        throw py::value_error("the transformation is of type " + WordOf(transformation.type) +
                              ", not " + WordOf(*wanted));
    }
    return {transformation, hull.empty() ? std::nullopt : std::optional(DomainOf(hull))};
}

}  // namespace

void AddInterchange(py::class_<KnownTransformation>& type) {
    using py::arg;
    type.def(
        "to_text", TextOf, arg("format"), py::kw_only(), arg("axes") = "en", arg("source_crs") = "",
        arg("target_crs") = "",
        "The transformation as text for other programs, every number with all its digits:\n\n"
        "json          a record, which from_text reads back to an equal transformation\n"
        "proj          for PROJ, pyproj and GDAL: affine or horner\n"
        "proj-helmert  for PROJ, scale and rotation of a similarity\n"
        "wkt2          an operation between source_crs and target_crs where both are WKT 2,\n"
        "              otherwise its method and parameters\n"
        "world, geotransform       of pictures: source x is the column, source y minus the line\n"
        "cad-world, gcps           with the control points of a fit\n"
        "sheet, c, python, sql, formulas\n\n"
        "axes tells where the first and the second coordinate point to: en, ne, ws, sw, es, wn,\n"
        "se or nw; 'es,en' where the systems differ. ValueError, with the reason, where the "
        "format\n"
        "cannot hold the transformation: nothing is approximated.");
    type.def_static(
        "from_text", FromText, arg("text"), arg("format") = py::none(), arg("type") = py::none(),
        "The transformation of a JSON record, a PROJ string (affine, helmert with theta, horner)\n"
        "or six numbers in brackets, which the text itself shows, or of the format given, which "
        "is\n"
        "needed for 'world'. Six numbers are of the type given, else 'affine'. Axes are not\n"
        "applied. ValueError, with the reason, for a text that is none of these.");
}

}  // namespace kv_tr::python
