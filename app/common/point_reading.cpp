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

}  // namespace

PointReading ReadPoints(const std::string& fileName, Comma comma, bool sigmas) {
    return ReadControlPointFile(fileName,
                                {.codePage = FilesCodePage(), .comma = comma, .sigmas = sigmas});
}

std::string Complaint(const Problem& problem, const std::string& fileName) {
    return Translated(
        problem.kind == Problem::Kind::kNotPositive ? Text::kBadSigmaLine : Text::kBadPointLine,
        {fileName, std::to_string(problem.line), Excerpt(TextOf(problem))});
}

}  // namespace kv_tr::app
