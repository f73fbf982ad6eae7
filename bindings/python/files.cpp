// Files of control points and of parameters for Python: read whole or not at all, without messages.
#include "python/files.h"

#include <algorithm>
#include <cmath>

#include "kv_tr/files/control_point_file.h"
#include "kv_tr/files/open_text.h"
#include "kv_tr/files/parameter_file.h"
#include "kv_tr/files/parameter_listing.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/replacing_file.h"
#include "python/binding.h"

namespace kv_tr::python {
namespace {

using Path = std::filesystem::path;

/// Raises kv_tr.FileError. Line 0 is the file as a whole.
[[noreturn]] void Raise(const Path& path, std::uint64_t line, const std::string& cause) {
    const py::object raised = py::module_::import("kv_tr").attr("FileError")(
        py::module_::import("os").attr("fsdecode")(py::bytes(path.string())),
        line == 0 ? py::object(py::none()) : py::int_(line), cause);
    PyErr_SetObject(py::type::handle_of(raised).ptr(), raised.ptr());
    throw py::error_already_set();
}

/// `needed` is what the file or its lines must hold.
std::string CauseOf(const Problem& problem, const Path& path, const std::string& needed) {
    std::error_code error;
    switch (problem.kind) {
        case Problem::Kind::kNotOpened:
            if (!std::filesystem::exists(path, error)) return "there is no such file";
            return std::filesystem::is_directory(path, error) ? "this is a folder"
                                                              : "the file cannot be opened";
        case Problem::Kind::kUnreadable: return "the system could not read on";
        case Problem::Kind::kLineTooLong: return "the line is too long to be one of a text";
        case Problem::Kind::kMissingField: return "too few fields: " + needed;
        case Problem::Kind::kNotANumber: return "a field is no number: " + needed;
        case Problem::Kind::kNotPositive: return "a standard deviation is not positive";
        case Problem::Kind::kDecimalCommas:
            return "the numbers seem to have decimal commas; decimal_comma=True takes them as such";
        case Problem::Kind::kUnknownLayout: return "no polynomial has that number of lines";
        case Problem::Kind::kUnequalFields: return "not as many fields as in the other lines";
        case Problem::Kind::kMixedDecimals:
            return "another decimal sign than in line " + std::to_string(problem.otherLine);
        case Problem::Kind::kAmbiguousCommas:
            return "decimal commas and comma separators cannot be told apart";
        case Problem::Kind::kBadHeader:
            return "the header does not name each of the four coordinates once";
        case Problem::Kind::kBadMark: return "a mark of use is neither 1 nor 0";
        case Problem::Kind::kDamaged: return "this does not belong to the format";
    }
    return needed;
}

[[noreturn]] void Raise(const Path& path, const Problem& problem, const std::string& needed) {
    std::string cause = CauseOf(problem, path, needed);
    if (problem.column > 0) cause += ", column " + std::to_string(problem.column);
    if (!problem.text.empty()) {
        const py::str text(problem.text);
        constexpr py::ssize_t kShown = 80;
        cause += ", in " + py::repr(text[py::slice(0, kShown, 1)]).cast<std::string>();
    }
    Raise(path, problem.line, cause);
}

bool IsAll(const Path& path) { return HasExtension(path.string(), "all"); }
bool IsPrm(const Path& path) { return HasExtension(path.string(), "prm"); }

void RequireKnownEnding(const Path& path) {
    if (IsAll(path) || IsPrm(path) || HasExtension(path.string(), "trp")) return;
    throw py::value_error("'" + path.string() + "': parameter files end in .trp, .prm or .all");
}

void RequireSuitableEnding(const Path& path, Type type) {
    RequireKnownEnding(path);
    if (IsAll(path) == IsPolynomial(type)) return;
    throw py::value_error("'" + path.string() + "' cannot hold a " + WordOf(type) +
                          " transformation: polynomials, bilinear and national types go to .all, "
                          "others to .trp or .prm");
}

/// The transformation of a polynomial file with the type that its reader wants.
Transformation WithType(Transformation loaded, Type type, const Path& path) {
    if (TermCount(type) != TermCount(loaded.type)) {
        Raise(path, 0,
              "its coefficients are those of " + WordOf(loaded.type) + ", not of " + WordOf(type));
    }
    loaded.type = type;
    return loaded;
}

std::string TextOf(const Transformation& transformation, const Path& path) {
    if (IsAll(path)) return ListPolynomial(transformation, WordOf(transformation.type)) + "\r\n";
    const auto format = IsPrm(path) ? LinearFormat::kItr25 : LinearFormat::kNative;
    std::string text;
    for (const std::string& line : LinearFileLines(transformation, format)) text += line + "\r\n";
    return text;
}

/// Writes a text with single bytes.
void Save(const Path& path, const std::string& text) {
    switch (WriteText(path.string(), text, CodePage::kWindows1250)) {
        case Written::kYes: return;
        case Written::kNotOpened: Raise(path, 0, "the file cannot be written");
        case Written::kFailed: Raise(path, 0, "not everything could be written");
    }
}

std::string FormatWords() {
    std::string words;
    for (const PointFormat format : kPointFormats)
        words += (words.empty() ? "'" : "', '") + std::string(WordOf(format));
    return words + "'";
}

/// The format of a word; nothing for an empty one.
std::optional<PointFormat> FormatFrom(const std::string& word) {
    const auto format = PointFormatNamed(word);
    if (format || word.empty()) return format;
    throw py::value_error("format must be one of " + FormatWords() + ", not '" + word + "'");
}

}  // namespace

std::pair<AxisMapping, AxisMapping> AxesFrom(const std::string& words) {
    const auto comma = words.find(',');
    const auto source = AxesNamed(words.substr(0, comma));
    const auto target = comma == words.npos ? source : AxesNamed(words.substr(comma + 1));
    if (source && target) return {*source, *target};
    throw py::value_error("axes must be one of " + AxisWords() +
                          ", or two of them with a comma between, not " + words);
}

PointFile ReadPoints(const Path& path, bool decimalComma, bool withSigmas,
                     const std::string& format, const std::string& axes) {
    const auto [sourceAxes, targetAxes] = AxesFrom(axes);
    PointFile file = ReadPointsOfFile(
        path.string(), {.format = FormatFrom(format),
                        .comma = decimalComma ? Comma::kDecimalSign : Comma::kSuspect,
                        .sigmas = withSigmas,
                        .sourceAxes = sourceAxes,
                        .targetAxes = targetAxes});
    if (!file.Complete()) {
        const char* needed = withSigmas
                                 ? "a line has an identifier, four coordinates and one or two "
                                   "standard deviations"
                                 : "a line has an identifier and four coordinates";
        Raise(path, file.problems.front(),
              file.format == PointFormat::kListing ? needed
                                                   : "read as " + std::string(WordOf(file.format)));
    }
    if (withSigmas && file.sigmas.size() != file.points.size())
        Raise(path, 0, "there are no standard deviations in it");
    return file;
}

PointText WritePointFile(const Path& path, const PointsToWrite& points, const std::string& format) {
    const auto chosen = format.empty() ? PointFormatOfName(path.string()) : FormatFrom(format);
    if (!chosen) {
        throw py::value_error("'" + path.string() +
                              "': the ending does not tell the format, give one: " + FormatWords());
    }
    PointText written = WritePoints(points, *chosen);
    switch (written.refusal) {
        case PointText::Refusal::kNone: break;
        case PointText::Refusal::kNotFinite:
            throw py::value_error("numbers that are not finite cannot be written");
        case PointText::Refusal::kTooManyPoints:
            throw py::value_error("a CAD world file has one or two points in use");
    }
    if (*chosen == PointFormat::kListing) {
        Save(path, written.text);
        return written;
    }
    ReplacingFile file(path.string());
    if (!file.IsOpen()) Raise(path, 0, "the file cannot be written");
    file.Write(written.text);
    if (!file.Commit()) Raise(path, 0, "not everything could be written");
    return written;
}

Transformation LoadParameters(const Path& path, bool decimalComma, std::optional<Type> type) {
    RequireKnownEnding(path);
    if (type) RequireSuitableEnding(path, *type);
    const NumberStyle numbers{decimalComma ? ',' : '.'};
    const ParameterReading reading =
        ReadParameterFile(path.string(), IsAll(path) ? Type::kAffine : type.value_or(Type::kAffine),
                          {.numbers = numbers});
    if (reading.Complete()) {
        return IsAll(path) && type ? WithType(reading.transformation, *type, path)
                                   : reading.transformation;
    }
    Raise(path, *reading.problem,
          IsAll(path) ? "the origin and each coefficient have two numbers"
                      : "the file has six numbers");
}

void SaveParameters(const Transformation& transformation, const Path& path) {
    RequireSuitableEnding(path, transformation.type);
    const auto isFinite = [](double value) { return std::isfinite(value); };
    if (!std::ranges::all_of(transformation.a, isFinite) ||
        !std::ranges::all_of(transformation.b, isFinite)) {
        throw py::value_error("coefficients that are not finite numbers cannot be saved");
    }
    Save(path, TextOf(transformation, path));
}

}  // namespace kv_tr::python
