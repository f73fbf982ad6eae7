// Parameter files, read whole or not at all.
#include "common/parameter_reading.h"

#include <sstream>

#include "common/excerpt.h"
#include "kv_tr/files/open_text.h"
#include "kv_tr/interchange/transformation_import.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr::app {
namespace {

std::string Complaint(const Problem& problem, const std::string& fileName) {
    if (problem.kind == Problem::Kind::kDecimalCommas) {
        ShowMessage(Translated(Text::kParametersHaveDecimalCommas, {fileName}), Icon::kExclamation);
        return {};
    }
    if (FormatNamed(fileName) != ParameterFormat::kPolynomial) {
        return Translated(Text::kSixNumbersNeeded, {fileName});
    }
    if (problem.kind == Problem::Kind::kUnknownLayout) {
        return Translated(Text::kNoSuchPolynomial, {fileName});
    }
    return Translated(Text::kUnreadableFrom, {fileName, std::to_string(problem.line)});
}

/// The text of a file, or as much of it as any file of parameters may have.
std::string TextOf(std::istream& file) {
    constexpr std::size_t kMostBytes = 1 << 20;
    std::string text(kMostBytes, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

bool NamesOwnFormat(const std::string& fileName) {
    return HasExtension(fileName, "trp") || HasExtension(fileName, "prm") ||
           HasExtension(fileName, "all");
}

}  // namespace

WholeParameters ReadParametersWhole(const std::string& fileName, Type linearType,
                                    NumberStyle numbers, SuspectCommas commas,
                                    UnnamedFormat unnamed) {
    auto file = OpenText(fileName);
    if (!file) {
        ReportOpenFailure(fileName);
        return {};
    }
    const std::string text = TextOf(*file);
    auto format = FormatOfText(text);
    if (!format && IsWorldFileName(fileName)) format = TransformationFormat::kWorldFile;
    if (format) {
        auto [record, problem] = ReadTransformation(text, *format, linearType);
        if (!problem) return {std::move(record), {}};
        problem->text = Excerpt(problem->text);
        return {{}, fileName + ": " + ProblemText(*problem, ComponentTexts()) + "."};
    }
    if (unnamed == UnnamedFormat::kRefused && !NamesOwnFormat(fileName))
        return {{}, Translated(Text::kUnknownParameters, {fileName})};
    std::istringstream lines(text);
    const auto reading =
        ReadParameters(lines, FormatNamed(fileName), linearType,
                       {.codePage = FilesCodePage(), .numbers = numbers, .suspectCommas = commas});
    if (reading.problem) return {{}, Complaint(*reading.problem, fileName)};
    return {TransformationRecord{.transformation = reading.transformation}, {}};
}

bool HoldsParametersOfOtherPrograms(const std::string& fileName) {
    auto file = OpenText(fileName);
    if (!file) return false;
    const std::string text = TextOf(*file);
    const auto format = FormatOfText(text);
    if (format == TransformationFormat::kJson)  // which control points may be, too
        return text.find("\"plane-transformation\"") != std::string::npos;
    if (format || !IsWorldFileName(fileName)) return format.has_value();
    return !ReadTransformation(text, TransformationFormat::kWorldFile).problem;
}

}  // namespace kv_tr::app
