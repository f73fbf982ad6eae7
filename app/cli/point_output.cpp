// Control points and residual vectors into files.
#include "cli/point_output.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/interruption.h"
#include "cli/parameters.h"
#include "cli/point_source.h"
#include "cli/program.h"
#include "common/point_text.h"
#include "kv_tr/published/message.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::cli {
namespace {

/// Tells what the written file lacks; false after a refusal.
bool TellWhatIsLost(const PointText& written, const std::string& name) {
    if (const std::string refusal = app::RefusalOf(written, name); !refusal.empty()) {
        ShowMessage(refusal, Icon::kExclamation);
        return false;
    }
    for (const std::string& loss : app::LossesOf(written, name)) PrintNote(loss);
    return true;
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
    const double chosen = scale.value_or(app::VisibleScale(what));
    const PointText written = WriteResidualVectors(what, chosen);
    if (!TellWhatIsLost(written, fileName) || !SaveBytes(fileName, written.text)) return false;
    if (!scale) PrintNote(Translated(Text::kVectorScale, {fileName, ShortestText(chosen)}));
    return true;
}

}  // namespace kv_tr::cli
