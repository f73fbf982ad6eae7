// The residual graph as one page: for a printer or a picture.
#include "kv_tr/forms/graph_page.h"

#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/type_names.h"
#include "kv_tr/text/line_reader.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr {
namespace {

std::string Metres(double value) { return FormatFixed(value, 3, 0); }

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::string_view rest = text; !rest.empty();) lines.emplace_back(TakeLine(rest).text);
    return lines;
}

}  // namespace

std::string FiguresText(const Statistics& figures) {
    return Translated(Text::kRmsInGraph) + Metres(figures.rms) + "\r\n" +  //
           "mY=" + Metres(figures.rmsFirst) + "  mX=" + Metres(figures.rmsSecond) + "\r\n" +
           Translated(Text::kRmsValuesInGraph) + "\r\n" +  //
           "Y=" + Metres(figures.meanFirst) + "  X=" + Metres(figures.meanSecond);
}

std::string LimitText(double limit) {
    constexpr std::uint8_t kMostDecimals = 17;
    for (std::uint8_t decimals = 2;; ++decimals) {
        std::string text = FormatFixed(limit, decimals, 0);
        if (decimals == kMostDecimals || TypedNumber(text) == limit) return text;
    }
}

std::string UsedCountText(const Adjustment& adjustment) {
    return Translated(Text::kUsedCount) + std::to_string(adjustment.UsedCount());
}

std::string ExcludedCountText(const Adjustment& adjustment) {
    return Translated(Text::kExcludedCount) + std::to_string(adjustment.ExcludedCount());
}

GraphPage PageOf(const Adjustment& adjustment, double limit, const GraphLabels& labels,
                 double width, double height) {
    GraphPage page{.width = width, .height = height, .title = Translated(Text::kAdjustmentTitle)};
    page.lines = Lines(TypeName(adjustment.FitType(), ComponentTexts()) + "\n" +
                       FiguresText(adjustment.Figures()));
    page.lines.push_back(UsedCountText(adjustment) + "  " + ExcludedCountText(adjustment) + "  " +
                         Translated(Text::kLimitLabel) + LimitText(limit));
    page.planTop =
        2 * GraphPage::kTitleSize + static_cast<double>(page.lines.size()) * GraphPage::kLineStep;
    page.marks =
        GraphMarks(adjustment, limit, ScaleFor(adjustment, width, height - page.planTop), labels);
    return page;
}

void SavePicture(const std::string& path, const std::string& bytes) {
    ReplacingFile file(path);
    if (!file.IsOpen()) return ReportOpenFailure(path);
    file.Write(bytes);
    if (!file.Commit()) throw WriteFailure(path);
}

}  // namespace kv_tr
