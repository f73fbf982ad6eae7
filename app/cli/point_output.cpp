// Control points and residual vectors into files.
#include "cli/point_output.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iostream>

#include "cli/interruption.h"
#include "cli/parameters.h"
#include "cli/point_source.h"
#include "cli/program.h"
#include "kv_tr/published/message.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::cli {
namespace {

/// Tells what the written file lacks; false after a refusal.
bool TellWhatIsLost(const PointText& written, const std::string& name) {
    using Refusal = PointText::Refusal;
    if (written.refusal != Refusal::kNone) {
        const bool finite = written.refusal != Refusal::kNotFinite;
        ShowMessage(Translated(finite ? Text::kOneOrTwoPoints : Text::kNumberNotFinite, {name}),
                    Icon::kExclamation);
        return false;
    }
    if (written.excludedLeftOut > 0) {
        PrintNote(
            Translated(Text::kExcludedLeftOut, {name, std::to_string(written.excludedLeftOut)}));
    }
    if (written.identifiersLeftOut) PrintNote(Translated(Text::kIdentifiersLeftOut, {name}));
    if (written.sigmasLeftOut) PrintNote(Translated(Text::kSigmasLeftOut, {name}));
    if (written.crsLeftOut) PrintNote(Translated(Text::kSystemLeftOut, {name}));
    return true;
}

/// The greatest of 1, 2, 5, 10, 20, ... with which the longest residual takes at most a twentieth
/// of the diagonal of the points.
double VisibleScale(const PointsToWrite& what) {
    if (what.points.empty()) return 1.0;
    Point least = what.points.front().destination, greatest = least;
    double longest = 0.0;
    for (std::size_t i = 0; i < what.points.size(); ++i) {
        const auto& [first, second] = what.points[i].destination;
        least = {std::min(least.first, first), std::min(least.second, second)};
        greatest = {std::max(greatest.first, first), std::max(greatest.second, second)};
        longest = std::max(longest, what.residuals[i].Length());
    }
    const double diagonal =
        std::hypot(greatest.first - least.first, greatest.second - least.second);
    const double most = diagonal / (20.0 * longest);
    if (!std::isfinite(most) || most < 1.0) return 1.0;
    const double power = std::pow(10.0, std::floor(std::log10(most)));
    return power * (most >= 5.0 * power ? 5.0 : most >= 2.0 * power ? 2.0 : 1.0);
}

}  // namespace

void AddOutputFormatOption(CLI::App& command, const std::string& option, std::string& word,
                           Text description) {
    command.add_option(option, word, Translated(description) + ": " + PointFormatWords())
        ->type_name("FORMAT")
        ->check(CheckWord(PointFormatWords()));
}

std::optional<PointFormat> OutputFormat(const std::string& word, const std::string& fileName) {
    return word.empty() ? PointFormatOfName(fileName) : PointFormatNamed(word);
}

bool WritePointsTo(const std::string& fileName, const PointsToWrite& what, PointFormat format) {
    const PointText written = WritePoints(what, format);
    if (!TellWhatIsLost(written, fileName.empty() ? std::string(WordOf(format)) : fileName))
        return false;
    if (fileName.empty()) {
        std::cout << written.text;
        return true;
    }
    const SignalsWait wait;
    return format == PointFormat::kListing ? SaveText(fileName, written.text)
                                           : SaveBytes(fileName, written.text);
}

bool WriteVectorsTo(const std::string& fileName, const PointsToWrite& what,
                    std::optional<double> scale) {
    const double chosen = scale.value_or(VisibleScale(what));
    const PointText written = WriteResidualVectors(what, chosen);
    if (!TellWhatIsLost(written, fileName) || !SaveBytes(fileName, written.text)) return false;
    if (!scale) PrintNote(Translated(Text::kVectorScale, {fileName, ShortestText(chosen)}));
    return true;
}

}  // namespace kv_tr::cli
