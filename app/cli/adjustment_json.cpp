// An adjustment as JSON.
#include "cli/adjustment_json.h"

#include <array>

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

Json PointsJson(const Adjustment& adjustment) {
    Json points = Json::array();
    for (std::size_t i = 0; i < adjustment.Points().size(); ++i) {
        const auto& [id, source, destination, used] = adjustment.Points()[i];
        const Residual& residual = adjustment.Residuals()[i];
        points.push_back({{"sId", id},
                          {"dXsour", source.first},
                          {"dYsour", source.second},
                          {"dXdest", destination.first},
                          {"dYdest", destination.second},
                          {"dXerr", residual.first},
                          {"dYerr", residual.second},
                          {"bNotUsed", !used}});
    }
    return points;
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
    report["points"] = PointsJson(adjustment);
    report["messages"] = MessagesJson();
    return report;
}

}  // namespace kv_tr::cli
