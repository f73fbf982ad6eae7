// The national transformations against their data and against formulas.
#include "kv_tr/model/national.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "helpers/files.h"

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

Type TypeOf(const std::string& text) { return Type{std::stoi(text)}; }

Point Apply(Type type, Point point) { return NationalTransformation(type).value().Apply(point); }

TEST(NationalTransformation, HoldsTheCoefficientsOfTheDataFile) {
    const auto rows = ReadRows("coefficients.csv");
    ASSERT_EQ(rows.size(), 24U * 22U);
    for (const auto& row : rows) {
        SCOPED_TRACE(row[0] + " index " + row[2]);
        const auto national = NationalTransformation(TypeOf(row[0]));
        ASSERT_TRUE(national);
        EXPECT_EQ(national->type, TypeOf(row[0]));
        EXPECT_EQ(national->a.at(std::stoul(row[2])), std::stod(row[3]));
        EXPECT_EQ(national->b.at(std::stoul(row[2])), std::stod(row[4]));
    }
}

TEST(NationalTransformation, IsNothingForOtherTypes) {
    for (const int type : {-5, -1, 0, 5, 6, 7, 9, 34, 1000}) {
        EXPECT_FALSE(NationalTransformation(Type{type})) << type;
    }
}

TEST(NationalTransformation, MeetsTheCheckPointsWithinTheirTolerances) {
    const auto rows = ReadRows("checkpoints.csv");
    ASSERT_EQ(rows.size(), 169U);
    for (const auto& row : rows) {
        SCOPED_TRACE(row[0] + " at " + row[1] + " " + row[2] + ", " + row[6]);
        const Point image = Apply(TypeOf(row[0]), {std::stod(row[1]), std::stod(row[2])});
        EXPECT_LE(std::hypot(image.first - std::stod(row[3]), image.second - std::stod(row[4])),
                  std::stod(row[5]));
    }
}

TEST(NationalInfos, NameEachTypeByItsConstant) {
    auto info = NationalInfos().begin();
    for (const auto& row : ReadRows("coefficients.csv")) {
        if (row[2] != "0") continue;
        ASSERT_NE(info, NationalInfos().end());
        EXPECT_EQ(info->type, TypeOf(row[0]));
        EXPECT_EQ("TR_" + std::string(info->name), row[1]);
        std::string systems = std::string(info->source) + "_" + info->destination;
        if (const auto at = systems.find("É"); at != std::string::npos) systems.replace(at, 2, "E");
        EXPECT_TRUE(std::string(info->name).starts_with(systems)) << systems;
        ++info;
    }
    EXPECT_EQ(info, NationalInfos().end());
}

}  // namespace
}  // namespace kv_tr
