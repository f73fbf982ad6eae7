// The residual graph as one page: for a printer or a picture.
#include "kv_tr/forms/graph_page.h"

#include <sstream>

#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/type_names.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr {
namespace {

std::string Metres(double value) { return FormatFixed(value, 3, 0); }

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.ends_with('\r')) line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

std::string StatisticsOf(const clsTrCalc& engine) {
    return GetMlString(90, "Kh.=") + Metres(engine.dRmsErr()) + "\r\n" +  //
           "mY=" + Metres(engine.dRmsErrX()) + "  mX=" + Metres(engine.dRmsErrY()) + "\r\n" +
           GetMlString(93, "Középértékek(m):") + "\r\n" +  //
           "Y=" + Metres(engine.dMiddleErrX()) + "  X=" + Metres(engine.dMiddleErrY());
}

std::string LimitTextOf(const clsTrCalc& engine) {
    constexpr std::uint8_t kMostDecimals = 17;
    for (std::uint8_t decimals = 2;; ++decimals) {
        const std::string text = FormatFixed(engine.gdErrLimit, decimals, 0);
        if (decimals == kMostDecimals || TypedNumber(text) == engine.gdErrLimit) return text;
    }
}

std::string UsedCountOf(const clsTrCalc& engine) {
    return GetMlString(67, "Számított:") + std::to_string(engine.lFullCnt() - engine.lNotUsedCnt());
}

std::string ExcludedCountOf(const clsTrCalc& engine) {
    return GetMlString(66, "Kizárt:") + std::to_string(engine.lNotUsedCnt());
}

GraphPage PageOf(const clsTrCalc& engine, const GraphLabels& labels, double width, double height) {
    GraphPage page{.width = width, .height = height, .title = GetMlString(31, "Transzformáció")};
    page.lines = Lines(TypeName(engine.eTrType()) + "\n" + StatisticsOf(engine));
    page.lines.push_back(UsedCountOf(engine) + "  " + ExcludedCountOf(engine) + "  " +
                         GetMlString(68, "Hibahatár[m]:") + LimitTextOf(engine));
    page.planTop =
        2 * GraphPage::kTitleSize + static_cast<double>(page.lines.size()) * GraphPage::kLineStep;
    page.marks = GraphMarks(engine.Held(), engine.gdErrLimit,
                            ScaleFor(engine, width, height - page.planTop), labels);
    return page;
}

void SavePicture(const std::string& path, const std::string& bytes) {
    ReplacingFile file(path);
    if (!file.IsOpen()) return ReportOpenFailure(path);
    file.Write(bytes);
    if (!file.Commit()) throw WriteFailure(path);
}

}  // namespace kv_tr
