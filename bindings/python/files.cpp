// Files of control points and of parameters for Python: read whole or not at all, without messages.
#include "python/files.h"

#include <algorithm>
#include <cmath>
#include <fstream>

#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/control_point_file.h"
#include "kv_tr/published/decimal_commas.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/pairs.h"
#include "kv_tr/published/parameter_file.h"
#include "kv_tr/published/parameter_listing.h"
#include "kv_tr/published/transformation_type.h"
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

/// clsFile would tell the user of a file that does not open.
void RequireReadable(const Path& path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error)) Raise(path, 0, "there is no such file");
    if (std::filesystem::is_directory(path, error)) Raise(path, 0, "this is a folder");
    if (!std::ifstream(path).is_open()) Raise(path, 0, "the file cannot be opened");
}

constexpr const char* kHasCommas =
    "the numbers seem to have decimal commas; decimal_comma=True takes them as such";

/// While it lives, numbers of files have this decimal sign.
class DecimalSignScope {
public:
    explicit DecimalSignScope(char sign) : before_(DecimalSeparator()) { DecimalSeparator(sign); }
    ~DecimalSignScope() { DecimalSeparator(before_); }
    DecimalSignScope(const DecimalSignScope&) = delete;
    DecimalSignScope& operator=(const DecimalSignScope&) = delete;

private:
    char before_;
};

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

LinearFormat FormatOf(const Path& path) {
    return IsPrm(path) ? LinearFormat::kItr25 : LinearFormat::kNative;
}

Transformation LoadLinear(const Path& path, Type type) {
    clsFile file;
    file.OpenIt(path.string(), true);
    TR_PRM record{.eType = PublishedType(type)};
    if (!ReadLinearFile(file, FormatOf(path), record)) {
        Raise(path, 0, "six numbers are needed at its beginning");
    }
    return TransformationOf(record);
}

Transformation LoadPolynomial(const Path& path, std::optional<Type> type) {
    TR_PRM record;
    const PolynomialReading reading = ReadPolynomialFile(path.string(), record);
    if (reading.badLine != 0) {
        Raise(path, reading.badLine, "two numbers are needed, of the origin or of a coefficient");
    }
    if (!reading.accepted) Raise(path, 0, "no polynomial has that number of lines");
    Transformation loaded = TransformationOf(record);
    if (!type || *type == loaded.type) return loaded;
    if (TermCount(*type) != TermCount(loaded.type)) {
        Raise(path, 0,
              "its coefficients are those of " + WordOf(loaded.type) + ", not of " + WordOf(*type));
    }
    loaded.type = *type;
    return loaded;
}

std::string TextOf(const Transformation& transformation, const Path& path) {
    const DecimalSignScope point('.');
    const TR_PRM record = RecordOf(transformation);
    if (IsAll(path)) return ListPolynomial(record, WordOf(transformation.type)) + "\r\n";
    std::string text;
    for (const std::string& line : LinearFileLines(record, FormatOf(path))) text += line + "\r\n";
    return text;
}

}  // namespace

std::vector<ControlPoint> ReadPoints(const Path& path, bool decimalComma) {
    RequireReadable(path);
    std::vector<ControlPoint> points;
    std::uint64_t number = 0;
    try {
        clsFile file;
        file.OpenIt(path.string(), true);
        while (!file.AtEnd()) {
            ++number;
            const std::string line = file.ReadLine();
            if (line.empty()) continue;
            if (!decimalComma && HasDecimalCommas(WithoutIdentifier(line), 4)) {
                Raise(path, number, kHasCommas);
            }
            typeXYs4Tr pair;
            if (!ReadPair(line, pair, decimalComma)) {
                Raise(path, number, "an identifier and four coordinates are needed");
            }
            points.push_back(ControlPointOf(pair));
        }
    } catch (const RuntimeError& failure) {
        Raise(path, number + 1, failure.what());
    }
    return points;
}

Transformation LoadParameters(const Path& path, bool decimalComma, std::optional<Type> type) {
    RequireKnownEnding(path);
    if (type) RequireSuitableEnding(path, *type);
    RequireReadable(path);
    if (!decimalComma && ParametersHaveDecimalCommas(path.string())) Raise(path, 0, kHasCommas);
    const DecimalSignScope sign(decimalComma ? ',' : '.');
    return IsAll(path) ? LoadPolynomial(path, type)
                       : LoadLinear(path, type.value_or(Type::kAffine));
}

void SaveParameters(const Transformation& transformation, const Path& path) {
    RequireSuitableEnding(path, transformation.type);
    const auto isFinite = [](double value) { return std::isfinite(value); };
    if (!std::ranges::all_of(transformation.a, isFinite) ||
        !std::ranges::all_of(transformation.b, isFinite)) {
        throw py::value_error("coefficients that are not finite numbers cannot be saved");
    }
    ReplacingFile file(path.string());
    if (!file.IsOpen()) Raise(path, 0, "the file cannot be written");
    file.Write(TextOf(transformation, path));
    if (!file.Commit()) Raise(path, 0, "not everything could be written");
}

}  // namespace kv_tr::python
