// Transformations out of the formats of other programs.
#include "kv_tr/interchange/transformation_import.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "kv_tr/interchange/format_writers.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr {
namespace {

using enum TransformationFormat;

std::string_view WithoutMark(std::string_view text) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
    return text;
}

}  // namespace

std::optional<TransformationFormat> FormatOfText(std::string_view text) {
    text = WithoutMark(text);
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (text.starts_with('{')) return kJson;
    if (text.starts_with('[')) return kGeotransform;
    if (text.starts_with('+')) text.remove_prefix(1);
    return text.starts_with("proj=") ? std::optional(kProj) : std::nullopt;
}

bool IsWorldFileName(const std::string& fileName) {
    constexpr std::array kEndings{"wld", "tfw", "jgw",  "pgw",  "gfw",
                                  "bpw", "sdw", "tifw", "jpgw", "pngw"};
    return std::ranges::any_of(kEndings,
                               [&](const char* ending) { return HasExtension(fileName, ending); });
}

ImportedTransformation ReadTransformation(std::string_view text, TransformationFormat format,
                                          Type linearType) {
    text = WithoutMark(text);
    switch (format) {
        case kJson: return ReadJsonRecord(text);
        case kProj:
        case kProjHelmert: return ReadProj(text, linearType);
        case kWorldFile: return ReadWorldFile(text, linearType);
        case kGeotransform: return ReadGeotransform(text, linearType);
        default: throw std::invalid_argument("This format is written only");
    }
}

std::string ProblemText(const ImportProblem& problem, const TextLookup& texts) {
    switch (problem.kind) {
        case ImportProblem::Kind::kNoJson:
            return FillPlaces(texts(Text::kUnreadableJson),
                              {std::to_string(problem.line), std::to_string(problem.column)});
        case ImportProblem::Kind::kUnsuitable:
            return FillPlaces(texts(Text::kUnsuitableMember), {problem.text});
        case ImportProblem::Kind::kNewer:
            return FillPlaces(texts(Text::kNewerRecord), {problem.text});
        case ImportProblem::Kind::kUnsupported:
            return FillPlaces(texts(Text::kUnsupportedStep), {problem.text});
        case ImportProblem::Kind::kNotFinite:
            return FillPlaces(texts(Text::kHoldsFiniteOnly), {texts(Text::kJsonFormat)});
        case ImportProblem::Kind::kSixNumbers: break;
    }
    return texts(Text::kSixNumbersInText);
}

}  // namespace kv_tr
