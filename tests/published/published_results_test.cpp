// Real control points against the results that were published for them, and bit for bit against
// those of an independent program.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "helpers/engine_test.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/eval_tr_prm.h"

namespace kv_tr {
namespace {

using Json = nlohmann::json;

Coefficients FromJson(const Json& json) {
    Coefficients coefficients;
    std::ranges::copy(json["dA"].get<std::vector<double>>(), coefficients.a.begin());
    std::ranges::copy(json["dB"].get<std::vector<double>>(), coefficients.b.begin());
    return coefficients;
}

std::vector<std::string> Files() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(TEST_DATA "/published")) {
        names.push_back(file.path().stem());
    }
    std::ranges::sort(names);
    return names;
}

class PublishedResults : public test::EngineTest,
                         public testing::WithParamInterface<std::string> {};

TEST_P(PublishedResults, ComeOutWithinTheirTolerancesAndWithTheSameBitsOnEveryMachine) {
    const Json none = {{"points", Json::array()}};
    const Json data = Json::parse(std::ifstream(TEST_DATA "/published/" + GetParam() + ".json"));
    const std::string examples = data["points"];
    ASSERT_TRUE(engine.bLoadXYsFromFile(EXAMPLES "/" + examples, false));
    engine.udtTrPrm({.eType = data["type"]});
    engine.DoCalcTr();
    const auto pairs = Pairs();
    const auto [a, b] = CoefficientsOf(engine.udtTrPrm());

    const Json& published = data["published"];
    ASSERT_FALSE(published.empty());
    const Json parameters = published.value("parameters", Json::object());
    for (const auto& [key, entry] : parameters.items()) {
        const double actual = (key[1] == 'A' ? a : b)[std::stoul(key.substr(2))];
        EXPECT_NEAR(actual, entry["value"], entry["tolerance"]) << key;
    }
    const Json residuals = published.value("residuals", none);
    for (std::size_t i = 0; i < residuals["points"].size(); ++i) {
        const Json& point = residuals["points"][i];
        test::ExpectNear({pairs.at(i).dXerr, pairs.at(i).dYerr}, {point[1], point[2]},
                         residuals["tolerance"]);
    }
    const Json transformed = published.value("transformed", none);
    for (const Json& point : transformed["points"]) {
        test::ExpectNear(test::Map(engine, {point[0], point[1]}), {point[2], point[3]},
                         transformed["tolerance"]);
    }
    const Json record = published.value("record", data["computed"]);
    const TR_PRM other = MakeRecord(data["type"], FromJson(record));
    Json errors;
    for (const auto& pair : pairs) {
        const PlanePoint source{pair.dXsour, pair.dYsour};
        test::ExpectNear(test::Map(engine, source), EvalTrPrm(other, source),
                         record.value("tolerance", 0.0));
        errors.push_back({pair.dXerr, pair.dYerr});
    }

    const Json& computed = data["computed"];
    EXPECT_EQ(a, FromJson(computed).a);
    EXPECT_EQ(b, FromJson(computed).b);
    EXPECT_EQ(errors, computed["residuals"]);
    const Json statistics = {{"dRmsErr", engine.dRmsErr()},
                             {"dRmsErrX", engine.dRmsErrX()},
                             {"dRmsErrY", engine.dRmsErrY()},
                             {"dMiddleErrX", engine.dMiddleErrX()},
                             {"dMiddleErrY", engine.dMiddleErrY()}};
    EXPECT_EQ(statistics, computed["stats"]);

    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

INSTANTIATE_TEST_SUITE_P(Examples, PublishedResults, testing::ValuesIn(Files()),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace kv_tr
