// Real control points against the results that were published for them.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "engine/clsTrCalc.h"
#include "helpers/recording_platform.h"
#include "model/coefficients.h"
#include "model/evaluate.h"

namespace kv_tr {
namespace {

using Json = nlohmann::json;

std::vector<std::string> DataFiles() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA "/published")) {
        names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

Coefficients FromJson(const Json& json) {
    Coefficients coefficients;
    for (std::size_t k = 0; k < json["dA"].size(); ++k) {
        coefficients.a[k] = json["dA"][k];
        coefficients.b[k] = json["dB"][k];
    }
    return coefficients;
}

class PublishedResults : public testing::TestWithParam<std::string> {
protected:
    test::RecordingPlatform platform;
    clsTrCalc engine;
    Json data;
    std::vector<typeXYs4Tr> pairs;

    void SetUp() override {
        data = Json::parse(std::ifstream(TEST_DATA "/published/" + GetParam() + ".json"));
        ASSERT_TRUE(
            engine.bLoadXYsFromFile(EXAMPLES "/" + data["points"].get<std::string>(), false));
        engine.eTrType(data["type"]);
        ASSERT_TRUE(engine.bXYCntIsValid4TrType(engine.eTrType()));
        engine.DoCalcTr();
        std::int32_t count = 0;
        engine.GetAllXYs(pairs, count);
    }

    double Parameter(const std::string& name) const {
        const auto [a, b] = CoefficientsOf(engine.udtTrPrm());
        return (name[1] == 'A' ? a : b)[std::stoul(name.substr(2))];
    }
};

TEST_P(PublishedResults, ComeOutWithinTheirTolerances) {
    const Json& published = data["published"];
    ASSERT_FALSE(published.empty());
    EXPECT_TRUE(platform.messages.empty());
    const auto section = [&published](const char* name) {
        return published.value(name, Json::object());
    };

    const Json parameters = section("parameters");
    for (const auto& [name, entry] : parameters.items()) {
        EXPECT_NEAR(Parameter(name), entry["value"], entry["tolerance"]) << name;
    }
    if (const Json residuals = section("residuals"); !residuals.empty()) {
        ASSERT_EQ(residuals["points"].size(), pairs.size());
        for (std::size_t i = 0; i < pairs.size(); ++i) {
            EXPECT_NEAR(pairs[i].dXerr, residuals["points"][i][1], residuals["tolerance"]);
            EXPECT_NEAR(pairs[i].dYerr, residuals["points"][i][2], residuals["tolerance"]);
        }
    }
    if (const Json points = section("transformed"); !points.empty()) {
        for (const Json& point : points["points"]) {
            double first = 0, second = 0;
            engine.TrXY(point[0], point[1], first, second);
            EXPECT_NEAR(first, point[2], points["tolerance"]);
            EXPECT_NEAR(second, point[3], points["tolerance"]);
        }
    }
    if (const Json record = section("record"); !record.empty()) {
        const Evaluator evaluate(MakeRecord(record["eType"], FromJson(record)));
        for (const auto& pair : pairs) {
            const PlanePoint image = evaluate({pair.dXsour, pair.dYsour});
            EXPECT_NEAR(image.first, pair.dXdest + pair.dXerr, record["tolerance"]);
            EXPECT_NEAR(image.second, pair.dYdest + pair.dYerr, record["tolerance"]);
        }
    }
    if (const Json scale = section("scalePpm"); !scale.empty()) {
        const double ppm = (std::hypot(Parameter("dA1"), Parameter("dB1")) - 1.0) * 1e6;
        EXPECT_NEAR(ppm, scale["value"], scale["tolerance"]);
    }
    if (const Json rotation = section("rotationGonMagnitude"); !rotation.empty()) {
        const double gon = std::atan2(Parameter("dB1"), Parameter("dA1")) * 50.0 / std::atan(1.0);
        EXPECT_NEAR(std::abs(gon), rotation["value"], rotation["tolerance"]);
    }
    if (const Json thereAndBack = section("thereAndBack"); !thereAndBack.empty()) {
        const TR_PRM there = engine.udtTrPrm();
        engine.SwapSourDest();
        engine.DoCalcTr();
        for (const Json& point : thereAndBack["points"]) {
            const PlanePoint image = EvalTrPrm(there, {point[0], point[1]});
            double first = 0, second = 0;
            engine.TrXY(image.first, image.second, first, second);
            EXPECT_NEAR(first, point[2], thereAndBack["tolerance"]);
            EXPECT_NEAR(second, point[3], thereAndBack["tolerance"]);
        }
    }
}

TEST_P(PublishedResults, ComeOutWithTheSameBitsOnEveryMachine) {
    const Json& computed = data["computed"];
    const Coefficients expected = FromJson(computed);
    const Coefficients actual = CoefficientsOf(engine.udtTrPrm());
    EXPECT_EQ(actual.a, expected.a);
    EXPECT_EQ(actual.b, expected.b);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        EXPECT_EQ(pairs[i].dXerr, computed["residuals"][i][0].get<double>());
        EXPECT_EQ(pairs[i].dYerr, computed["residuals"][i][1].get<double>());
    }
    EXPECT_EQ(engine.dRmsErr(), computed["stats"]["dRmsErr"].get<double>());
    EXPECT_EQ(engine.dRmsErrX(), computed["stats"]["dRmsErrX"].get<double>());
    EXPECT_EQ(engine.dRmsErrY(), computed["stats"]["dRmsErrY"].get<double>());
    EXPECT_EQ(engine.dMiddleErrX(), computed["stats"]["dMiddleErrX"].get<double>());
    EXPECT_EQ(engine.dMiddleErrY(), computed["stats"]["dMiddleErrY"].get<double>());
}

INSTANTIATE_TEST_SUITE_P(Examples, PublishedResults, testing::ValuesIn(DataFiles()),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace kv_tr
