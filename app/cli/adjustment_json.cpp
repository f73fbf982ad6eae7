// An adjustment as JSON.
#include "cli/adjustment_json.h"

#include <array>
#include <ostream>
#include <utility>

#include "cli/json_text.h"
#include "cli/program.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::cli {
namespace {

using Json = nlohmann::ordered_json;

Json StatisticsJson(const Statistics& figures) {
    return {{"dRmsErr", figures.rms},
            {"dRmsErrX", figures.rmsFirst},
            {"dRmsErrY", figures.rmsSecond},
            {"dMiddleErrX", figures.meanFirst},
            {"dMiddleErrY", figures.meanSecond}};
}

constexpr const char* kPoints = "points";

Json PointJson(const ControlPoint& point, const Residual& residual) {
    const auto& [id, source, destination, used] = point;
    return {{"sId", id},
            {"dXsour", source.first},
            {"dYsour", source.second},
            {"dXdest", destination.first},
            {"dYdest", destination.second},
            {"dXerr", residual.first},
            {"dYerr", residual.second},
            {"bNotUsed", !used}};
}

void PrintPoints(std::ostream& output, const Adjustment& adjustment) {
    output << '[';
    const auto points = adjustment.Points();
    for (std::size_t i = 0; i < points.size(); ++i) {
        output << (i == 0 ? "\n    " : ",\n    ")
               << JsonText(PointJson(points[i], adjustment.Residuals()[i]), 4);
    }
    output << (points.empty() ? "]" : "\n  ]");
}

Json MessagesJson() {
    constexpr std::array kIconNames{"none", "information", "exclamation"};
    Json messages = Json::array();
    for (const Message& message : ReportedMessages()) {
        messages.push_back({{"text", message.text},
                            {"title", message.title},
                            {"icon", kIconNames[static_cast<std::size_t>(message.icon)]}});
    }
    return messages;
}

}  // namespace

nlohmann::ordered_json AdjustmentJson(const Adjustment& adjustment, bool fitted) {
    Json report;
    report["type"] = NumberOf(adjustment.FitType());
    report["typeName"] = TypeName(adjustment.FitType(), ComponentTexts());
    report["parameters"] = fitted ? ParametersJson(adjustment.Result()) : Json();
    report["statistics"] = fitted ? StatisticsJson(adjustment.Figures()) : Json();
    report[kPoints] = nullptr;  // their place
    report["messages"] = MessagesJson();
    return report;
}

void PrintAdjustmentJson(std::ostream& output, const Json& report, const Adjustment& adjustment) {
    const char* separator = "{\n  ";
    for (const auto& [key, item] : report.items()) {
        output << std::exchange(separator, ",\n  ") << Json(key).dump() << ": ";
        if (key == kPoints) {
            PrintPoints(output, adjustment);
        } else {
            output << JsonText(item, 2);
        }
    }
    output << "\n}\n";
}

}  // namespace kv_tr::cli
