// What is wrong with a file of control points, in words.
#include "common/point_reading.h"

#include "common/excerpt.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::app {
namespace {

/// The line, or why there is none.
std::string TextOf(const Problem& problem) {
    using Cause = TextError::Cause;
    switch (problem.kind) {
        case Problem::Kind::kLineTooLong: return ReadFailure(TextError(Cause::kLineTooLong)).what();
        case Problem::Kind::kUnreadable: return ReadFailure(TextError(Cause::kUnreadable)).what();
        default: return problem.text;
    }
}

std::string ReasonOf(const Problem& problem) {
    using Kind = Problem::Kind;
    switch (problem.kind) {
        case Kind::kNotOpened:
        case Kind::kUnreadable:
        case Kind::kLineTooLong: return TextOf(problem);
        case Kind::kMissingField: return Translated(Text::kReasonMissing);
        case Kind::kNotANumber: return Translated(Text::kReasonNoNumber);
        case Kind::kNotPositive: return Translated(Text::kReasonNotPositive);
        case Kind::kUnequalFields: return Translated(Text::kReasonUnequalFields);
        case Kind::kMixedDecimals:
            return Translated(Text::kReasonMixedDecimals, {std::to_string(problem.otherLine)});
        case Kind::kDecimalCommas:
        case Kind::kAmbiguousCommas: return Translated(Text::kReasonAmbiguousCommas);
        case Kind::kBadHeader: return Translated(Text::kReasonHeader);
        case Kind::kBadMark: return Translated(Text::kReasonMark);
        case Kind::kUnknownLayout:
        case Kind::kDamaged: return Translated(Text::kReasonDamaged);
    }
    return {};
}

}  // namespace

PointFile ReadPoints(const std::string& fileName, Comma comma, std::optional<PointFormat> format) {
    return ReadPointsOfFile(fileName,
                            {.format = format, .codePage = FilesCodePage(), .comma = comma});
}

std::string Complaint(const Problem& problem, const std::string& fileName) {
    return Translated(
        problem.kind == Problem::Kind::kNotPositive ? Text::kBadSigmaLine : Text::kBadPointLine,
        {fileName, std::to_string(problem.line), Excerpt(TextOf(problem))});
}

std::string FieldComplaint(const Problem& problem, const std::string& fileName) {
    return Translated(Text::kFieldProblem,
                      {fileName, std::to_string(problem.line), std::to_string(problem.column),
                       ReasonOf(problem), Excerpt(problem.text)});
}

std::string IdentifiersNote(Text text, const std::string& fileName,
                            const std::vector<std::string>& ids) {
    constexpr std::size_t kNamed = 10;
    std::string names;
    for (std::size_t i = 0; i < ids.size() && i < kNamed; ++i)
        names += (i > 0 ? ", " : "") + Excerpt(ids[i]);
    if (ids.size() > kNamed) names += ", ...";
    return Translated(text, {fileName, std::to_string(ids.size()), names});
}

}  // namespace kv_tr::app
