// What a file of points could not hold, and how much its vectors are enlarged.
#include "common/point_text.h"

#include <algorithm>
#include <cmath>

#include "kv_tr/model/elementary.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/text/round_number.h"

namespace kv_tr::app {

std::string RefusalOf(const PointText& written, const std::string& name) {
    using Refusal = PointText::Refusal;
    if (written.refusal == Refusal::kNone) return {};
    const bool finite = written.refusal != Refusal::kNotFinite;
    return Translated(finite ? Text::kOneOrTwoPoints : Text::kNumberNotFinite, {name});
}

std::vector<std::string> LossesOf(const PointText& written, const std::string& name) {
    std::vector<std::string> losses;
    if (written.excludedLeftOut > 0) {
        losses.push_back(
            Translated(Text::kExcludedLeftOut, {name, std::to_string(written.excludedLeftOut)}));
    }
    const auto add = [&](bool applies, Text text) {
        if (applies) losses.push_back(Translated(text, {name}));
    };
    add(written.identifiersLeftOut, Text::kIdentifiersLeftOut);
    add(written.sigmasLeftOut, Text::kSigmasLeftOut);
    add(written.crsLeftOut, Text::kSystemLeftOut);
    return losses;
}

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
        Hypotenuse(greatest.first - least.first, greatest.second - least.second);
    const double most = diagonal / (20.0 * longest);
    if (!std::isfinite(most) || most < 1.0) return 1.0;
    const double power = PowerOfTen(DecimalExponent(most));
    return power * (most >= 5.0 * power ? 5.0 : most >= 2.0 * power ? 2.0 : 1.0);
}

}  // namespace kv_tr::app
