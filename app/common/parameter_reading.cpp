// Parameter files, read whole or not at all.
#include "common/parameter_reading.h"

#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::app {
namespace {

std::string Complaint(const Problem& problem, const std::string& fileName) {
    if (problem.kind == Problem::Kind::kNotOpened) {
        ReportOpenFailure(fileName);
        return {};
    }
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

}  // namespace

WholeParameters ReadParametersWhole(const std::string& fileName, Type linearType,
                                    NumberStyle numbers, SuspectCommas commas) {
    const auto reading = ReadParameterFile(
        fileName, linearType,
        {.codePage = FilesCodePage(), .numbers = numbers, .suspectCommas = commas});
    if (reading.Complete()) return {reading.transformation, {}};
    return {{}, Complaint(*reading.problem, fileName)};
}

}  // namespace kv_tr::app
