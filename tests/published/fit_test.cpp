// What the published engine tells of a fit, fits whose result is known to many digits, and real
// control points with the results that were published for them.
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/eval_tr_prm.h"
#include "kv_tr/published/pairs.h"

namespace kv_tr {
namespace {

using Json = nlohmann::json;

Transformation FromJson(const Json& type, const Json& json) {
    Transformation t{.type = Type{type.get<int>()}};
    std::ranges::copy(json["dA"].get<std::vector<double>>(), t.a.begin());
    std::ranges::copy(json["dB"].get<std::vector<double>>(), t.b.begin());
    return t;
}

class FitTest : public test::EngineTest {
protected:
    void FitPoints(const std::vector<ControlPoint>& points, enuTR_TYPE type) {
        std::vector<typeXYs4Tr> pairs;
        for (const ControlPoint& point : points) pairs.push_back(PairOf(point, {}));
        Fit(pairs, type);
    }
};

TEST_F(FitTest, SaysThatASystemIsSingularOnlyForExactZeros) {
    // All first coordinates equal: their reduced column is exactly zero.
    auto line = test::PairsBy({{100, 0}, {100, 10}, {100, 30}, {100, 60}}, test::Identity);
    Fit(line, TR_AFFIN);
    EXPECT_TRUE(std::isfinite(engine.dRmsErr())) << "stored all the same";
    Fit(test::ShiftedPairs(25), TR_OL_METER);
    for (auto& pair : line) pair.bNotUsed = true;
    Fit(line, TR_HELMERT);
    EXPECT_EQ(platform.TakeTexts(), Texts(3, "KORVANEL --> matrix inv.: DET=0 !"));
    EXPECT_TRUE(std::isnan(engine.dMiddleErrX()));

    // A type beyond the known ones is named for every used pair.
    auto pairs = test::ShiftedPairs(22);
    pairs[5].bNotUsed = true;
    Fit(pairs, static_cast<enuTR_TYPE>(34));
    EXPECT_EQ(platform.TakeTexts(), Texts(21, "KORVANEL --> mudtTR_PRM.eType=34"));
}

TEST_F(FitTest, TellsOfAnIterationThatDoesNotConvergeInTheWordsOfItsType) {
    engine.setLanguageID(kHungarian);  // where the two texts differ
    for (const auto& [type, own, other, text] :
         {std::tuple{TR_HELMERT_3, &clsTrCalc::DoCalc_Helmert3, &clsTrCalc::DoCalc_Affin5,
                     "A transzformáció nem számítható!"},
          {TR_AFFIN_5, &clsTrCalc::DoCalc_Affin5, &clsTrCalc::DoCalc_Helmert3,
           "A transzformáció nem számítható !"}}) {
        FitPoints(test::PointsBy(test::General(Type{type}), 9, 0.03), type);
        const double rms = engine.dRmsErr();
        (engine.*own)(0);
        EXPECT_EQ(platform.TakeTexts(), Texts{text});
        EXPECT_NE(engine.dRmsErr(), rms) << "the last iterate is stored";
        (engine.*other)(0);  // is DoCalcTr
        EXPECT_EQ(engine.dRmsErr(), rms);
        EXPECT_EQ(platform.TakeTexts(), Texts{});
    }
}

TEST_F(FitTest, ChangesNothingWithoutAStartOrWithoutPairs) {
    FitPoints(test::PointsBy(test::General(Type::kAffine), 9, 0.03), TR_AFFIN);
    const Transformation before = engine.Held().Result();
    const double rms = engine.dRmsErr();
    const auto onCentroid =
        test::PairsBy({{10, 10}, {0, 10}, {20, 10}, {10, 0}, {10, 20}}, test::Identity);
    test::ExpectError(ErrorNumber::kDivisionByZero, [&] { Fit(onCentroid, TR_AFFIN_5); });
    Fit({}, TR_AFFIN);
    EXPECT_EQ(engine.Held().Result(), before);
    EXPECT_EQ(engine.dRmsErr(), rms);
}

// Against solutions that tools/exact_fit.py computed with 60 digits.
TEST_F(FitTest, AgreesWithExactSolutionsAtEveryPoint) {
    const std::pair<const char*, enuTR_TYPE> cases[] = {
        {"helmert", TR_HELMERT}, {"affine", TR_AFFIN},      {"helmert3", TR_HELMERT_3},
        {"affine5", TR_AFFIN_5}, {"bilinear", TR_BILINEAR}, {"poly1", TR_POLI_1},
        {"poly2", TR_POLI_2},    {"poly3", TR_POLI_3},      {"poly4", TR_POLI_4},
        {"poly5", TR_POLI_5}};
    // The iterations stop when a correction is below a millimetre; the last one is squared.
    const double tolerance = 1e-7;
    std::map<std::string, int> seen;
    for (const std::string set : {TEST_DATA "/exact/country", TEST_DATA "/exact/town"}) {
        ASSERT_TRUE(engine.bLoadXYsFromFile(set + ".dat", false));
        for (const auto& [model, type] : cases) {
            SCOPED_TRACE(set + "_" + model);
            Fit(Pairs(), type);
            const auto pairs = Pairs();
            std::ifstream solution(set + "_" + model + ".txt");
            for (std::string line; std::getline(solution, line);) {
                std::istringstream fields(line);
                std::string kind;
                double v[4] = {};
                fields >> kind >> v[0] >> v[1] >> v[2] >> v[3];
                ++seen[kind];
                if (kind == "point") {
                    test::ExpectNear(test::Map(engine, {v[0], v[1]}), {v[2], v[3]}, tolerance);
                } else if (kind == "residual") {
                    const typeXYs4Tr& pair = pairs.at(static_cast<std::size_t>(v[0]));
                    test::ExpectNear({pair.dXerr, pair.dYerr}, {v[1], v[2]}, tolerance);
                }
            }
        }
    }
    EXPECT_EQ(seen["point"] * 1000 + seen["residual"], 170684);
}

// Real control points, and bit for bit the results of an independent program.
TEST_F(FitTest, MeetsPublishedResultsWithinTheirTolerancesAndWithTheSameBitsOnEveryMachine) {
    const Json none = {{"points", Json::array()}};
    for (const auto& file : std::filesystem::directory_iterator(TEST_DATA "/published")) {
        SCOPED_TRACE(file.path());
        const Json data = Json::parse(std::ifstream(file.path()));
        const std::string examples = data["points"];
        ASSERT_TRUE(engine.bLoadXYsFromFile(EXAMPLES "/" + examples, false));
        engine.udtTrPrm({.eType = data["type"]});
        engine.DoCalcTr();
        const auto pairs = Pairs();
        const Transformation found = engine.Held().Result();

        const Json& published = data["published"];
        const Json parameters = published.value("parameters", Json::object());
        for (const auto& [key, entry] : parameters.items()) {
            const double actual = (key[1] == 'A' ? found.a : found.b)[std::stoul(key.substr(2))];
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
        const TR_PRM other = RecordOf(FromJson(data["type"], record));
        Json errors;
        for (const auto& pair : pairs) {
            const PlanePoint source{pair.dXsour, pair.dYsour};
            test::ExpectNear(test::Map(engine, source), EvalTrPrm(other, source),
                             record.value("tolerance", 0.0));
            errors.push_back({pair.dXerr, pair.dYerr});
        }

        const Json& computed = data["computed"];
        EXPECT_EQ(found, FromJson(data["type"], computed));
        EXPECT_EQ(errors, computed["residuals"]);
        const Json statistics = {{"dRmsErr", engine.dRmsErr()},
                                 {"dRmsErrX", engine.dRmsErrX()},
                                 {"dRmsErrY", engine.dRmsErrY()},
                                 {"dMiddleErrX", engine.dMiddleErrX()},
                                 {"dMiddleErrY", engine.dMiddleErrY()}};
        EXPECT_EQ(statistics, computed["stats"]);

        EXPECT_EQ(platform.TakeTexts(), Texts{});
    }
}

}  // namespace
}  // namespace kv_tr
