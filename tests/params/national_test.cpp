// The national transformations against their data, against formulas and against one another.
#include "params/national.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

#include "helpers/files.h"
#include "model/coefficients.h"
#include "model/evaluate.h"

namespace kv_tr {
namespace {

/// The rows of a file of tests/data/national, without its heading.
std::vector<std::vector<std::string>> ReadRows(const std::string& name) {
    std::istringstream lines(test::ReadFile(TEST_DATA "/national/" + name));
    std::vector<std::vector<std::string>> rows;
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        auto& row = rows.emplace_back();
        for (std::string field; std::getline(fields, field, ',');) row.push_back(field);
    }
    return rows;
}

enuTR_TYPE TypeOf(const std::string& text) { return static_cast<enuTR_TYPE>(std::stoi(text)); }

PlanePoint Apply(enuTR_TYPE type, PlanePoint point) {
    return EvalTrPrm(NationalRecord(type).value(), point);
}

double Distance(PlanePoint a, PlanePoint b) {
    return std::hypot(a.first - b.first, a.second - b.second);
}

TEST(NationalRecord, HoldsTheCoefficientsOfTheDataFile) {
    const auto rows = ReadRows("coefficients.csv");
    ASSERT_EQ(rows.size(), 24U * 22U);
    for (const auto& row : rows) {
        SCOPED_TRACE(row[0] + " index " + row[2]);
        const auto record = NationalRecord(TypeOf(row[0]));
        ASSERT_TRUE(record);
        const auto [a, b] = CoefficientsOf(*record);
        EXPECT_EQ(a.at(std::stoul(row[2])), std::stod(row[3]));
        EXPECT_EQ(b.at(std::stoul(row[2])), std::stod(row[4]));
    }
    for (const int type : {-5, -1, 0, 5, 6, 7, 9, 34, 1000}) {
        EXPECT_FALSE(NationalRecord(static_cast<enuTR_TYPE>(type))) << type;
    }
}

TEST(NationalRecord, MeetsTheCheckPointsAndLeadsBackFromThem) {
    // Polynomials leave up to half a millimetre, above all where terms are absent (13 to 19). More
    // comes from published constants that do not fit those of the way back.
    std::map<enuTR_TYPE, double> tolerance{
        {TR_STG_EOV_10e, 0.006},  // B(1) is 5 mm off
        {TR_BOV_HKR, 0.016},      // A(1) is 5 mm off, A(2) and A(3) 0.75 ppm
        {TR_BOV_EOV, 0.002},
    };
    constexpr int kBack[] = {13, 14, 15, 10, 11, 12, 17, 16, 19, 18, 21, 20,
                             23, 22, 25, 24, 30, 31, 32, 33, 26, 27, 28, 29};  // of 10 to 33
    const auto rows = ReadRows("checkpoints.csv");
    ASSERT_EQ(rows.size(), 169U);
    for (const auto& row : rows) {
        SCOPED_TRACE(row[0] + " at " + row[1] + " " + row[2] + ", " + row[6]);
        const enuTR_TYPE type = TypeOf(row[0]);
        const PlanePoint point{std::stod(row[1]), std::stod(row[2])};
        const PlanePoint image = Apply(type, point);
        EXPECT_LE(Distance(image, {std::stod(row[3]), std::stod(row[4])}), std::stod(row[5]));
        const auto back = static_cast<enuTR_TYPE>(kBack[type - TR_STG_HER]);
        EXPECT_LE(Distance(Apply(back, image), point),
                  std::max({0.0006, tolerance[type], tolerance[back]}));
    }
}

}  // namespace
}  // namespace kv_tr
