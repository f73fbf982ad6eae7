#include "kv_tr/model/inverse.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <numbers>
#include <stdexcept>

#include "helpers/sample_points.h"
#include "kv_tr/model/distortion.h"
#include "kv_tr/model/fold.h"
#include "kv_tr/model/national.h"
#include "kv_tr/model/point_map.h"

namespace kv_tr::test {
namespace {

using Json = nlohmann::json;

Point PointOf(const Json& json) { return {json.at(0).get<double>(), json.at(1).get<double>()}; }

/// A record with what 50 digits give for it.
struct Case {
    explicit Case(const std::string& name) {
        std::ifstream(TEST_DATA "/adjustment/" + name + ".json") >> json;
        t.type = json["type"] == "affine" ? Type::kAffine : Type::kPolynomial2;
        json["record"]["dA"].get_to(t.a);
        json["record"]["dB"].get_to(t.b);
    }
    Json json;
    Transformation t;
};

/// Y = u + u² / 2000, which folds at u = -1000.
const Case kFolding("inverse_fold_poly2");

TEST(ExactInverse, FindsThePublishedSourcesAndTheDistortionThere) {
    for (const auto& [json, t] :
         {kFolding, Case("inverse_greek_poly2"), Case("distortion_mirrored_affine")}) {
        const auto inverse = ExactInverse::Of(t);
        ASSERT_TRUE(inverse);
        for (const Json& point : json["points"]) {
            SCOPED_TRACE(point.dump());
            const SourcePoint source = inverse->Apply(PointOf(point["image"]));
            ASSERT_TRUE(source.Found());
            const Point exact = PointOf(point["inverse_of_the_image"]);
            EXPECT_NEAR(source.point.first, exact.first, 2e-9);
            EXPECT_NEAR(source.point.second, exact.second, 2e-9);

            const Distortion d = DistortionAt(t, PointOf(point["source"]));
            const Json& tissot = point["tissot"];
            const auto figure = [&](const char* name) { return tissot[name].get<double>(); };
            EXPECT_NEAR(d.greatestScale, figure("scale_max"), 1e-12);
            EXPECT_NEAR(d.leastScale, figure("scale_min"), 1e-12);
            EXPECT_NEAR(d.areaScale, figure("det"), 1e-12);
            EXPECT_NEAR(d.rotation, figure("rotation"), 1e-12);
            EXPECT_NEAR(d.greatestAngleChange, figure("max_angular_distortion"), 1e-12);
            ASSERT_EQ(d.directionInSource.has_value(), !tissot["direction_source"].is_null());
            if (!d.directionInSource) continue;
            const double tolerance = 1e-14 * d.greatestScale / (d.greatestScale - d.leastScale);
            EXPECT_NEAR(*d.directionInSource, figure("direction_source"), tolerance);
            EXPECT_NEAR(*d.directionInDestination, figure("direction_destination"), tolerance);
        }
    }
}

TEST(ExactInverse, RefusesWhatHasNoSourceAndSaysWhy) {
    for (const Json& image : kFolding.json["unreachable_images"]) {
        EXPECT_EQ(ExactInverse::Of(kFolding.t)->Apply(PointOf(image)).trouble,
                  NoSource::kNotReached);
    }
    const Domain domain = DomainOf(std::vector<Point>{{900, 1950}, {1100, 1950}, {1300, 2250}});
    EXPECT_EQ(domain, (Domain{{700, 1800}, {1500, 2400}, {1100, 2050}}));
    const auto limited = *ExactInverse::Of(kFolding.t, domain);
    // The cubic folds at u = ±1000, whose images are ±2000/3; beyond there are sources once more.
    Transformation cubic{.type = Type::kPolynomial3, .a = {0, 0, 1}, .b = {0, 0, 0, 1}};
    cubic.a[7] = -1.0 / 3e6;
    const auto unlimited = *ExactInverse::Of(cubic);
    Transformation mirrored = cubic;
    mirrored.b[3] = -1.0;
    const auto mirror = *ExactInverse::Of(mirrored);
    const struct {
        const ExactInverse& inverse;
        Point destination;
        NoSource trouble;
    } cases[] = {
        {limited, kFolding.t.Apply({700.5, 1800.5}), NoSource::kNone},
        {limited, kFolding.t.Apply({1499.5, 2399.5}), NoSource::kNone},
        {limited, kFolding.t.Apply({699.5, 1900}), NoSource::kOutsideDomain},
        {limited, kFolding.t.Apply({1500.5, 1900}), NoSource::kOutsideDomain},
        {limited, kFolding.t.Apply({900, 1799.5}), NoSource::kOutsideDomain},
        {limited, kFolding.t.Apply({900, 2400.5}), NoSource::kOutsideDomain},
        {limited, {NAN, 0}, NoSource::kNotReached},
        {limited, {0, HUGE_VAL}, NoSource::kNotReached},
        {unlimited, {660, 5}, NoSource::kNone},
        {unlimited, {666.66666, 5}, NoSource::kNone},
        {unlimited, {900, 5}, NoSource::kNotReached},
        {unlimited, {-2e6, 5}, NoSource::kBeyondFold},
        {mirror, {-660, 5}, NoSource::kNone},
    };
    for (const auto& [inverse, destination, trouble] : cases) {
        SCOPED_TRACE(testing::Message() << destination.first << " " << destination.second);
        const SourcePoint source = inverse.Apply(destination);
        EXPECT_EQ(source.trouble, trouble);
        EXPECT_EQ(std::isnan(source.point.first), !source.Found());
        if (!source.Found()) continue;
        const Point image = inverse.Forward().Apply(source.point);
        EXPECT_NEAR(image.first, destination.first, 1e-9);
        EXPECT_NEAR(image.second, destination.second, 1e-9);
    }
}

TEST(ExactInverse, HasNoSourceBeyondTheNumbers) {
    const Transformation far{.type = Type::kBilinear, .a = {1.7e308, 0, 1}, .b = {0, 0, 0, 1}};
    EXPECT_FALSE(ExactInverse::Of(far)->Apply({-1e308, 3}).Found()) << "its square overflows";
    const Transformation flat{
        .type = Type::kBilinear, .a = {1.7e308, 0, 1e-300}, .b = {0, 0, 0, 1}};
    EXPECT_EQ(ExactInverse::Of(flat)->Apply({1e8, 0}).trouble, NoSource::kNotReached);
    EXPECT_DOUBLE_EQ(ExactInverse::Of(flat)->Apply({-1e8, 0}).point.first, 1.7e308 - 1e308);
}

TEST(ExactInverse, ExistsWhereTheMiddleIsOneToOne) {
    Transformation t{.type = Type::kPolynomial2, .a = {0, 0, 0, 0, 1}, .b = {0, 0, 0, 1}};
    EXPECT_FALSE(ExactInverse::Of(t)) << "u² folds at its origin";
    const Domain beside{{1, -10}, {9, 10}, {5, 0}};
    const SourcePoint source = ExactInverse::Of(t, beside)->Apply({16, 3});
    EXPECT_EQ(source.point, (Point{4, 3})) << "from the centre, without linear terms to start from";
    t.a[2] = 1.0;
    t.a[1] = HUGE_VAL;
    EXPECT_FALSE(ExactInverse::Of(t));
    EXPECT_FALSE(ExactInverse::Of({.a = {0, 1, 2}, .b = {0, 2, 4}}));
    const auto linear = *ExactInverse::Of(General(Type::kAffine), beside);
    const Point far{1e7, -3e7};
    EXPECT_EQ(linear.Apply(far).point, General(Type::kAffine).Inverse()->Apply(far));
    EXPECT_EQ(linear.Apply({NAN, 0}).trouble, NoSource::kNotReached);
}

TEST(ExactInverse, ReachesTheEndsOfTheCountryAndThePrecisionOfItsCoordinates) {
    for (const NationalInfo& info : NationalInfos()) {
        const Transformation t = *NationalTransformation(info.type);
        const auto inverse = *ExactInverse::Of(t);
        const double reach = info.area == NationalArea::kHungary ? 200e3 : 15e3;
        for (int i = 0; i < 60; ++i) {
            const Point at{t.a[0] + reach * std::sin(1.1 * i * i), t.b[0] + reach * std::sin(i)};
            const SourcePoint source = inverse.Apply(t.Apply(at));
            EXPECT_NEAR(source.point.first, at.first, 2e-9) << info.name;
            EXPECT_NEAR(source.point.second, at.second, 2e-9) << info.name;
        }
    }
}

TEST(ExactInverse, RefusesArraysOfDifferentLengths) {
    const auto inverse = *ExactInverse::Of(kFolding.t);
    std::vector<double> three(3), four(4);
    std::vector<NoSource> two(2), one(1);
    EXPECT_THROW(inverse.Apply(three, three, three, four), std::invalid_argument);
    EXPECT_THROW(inverse.Apply(three, four, three, three), std::invalid_argument);
    EXPECT_THROW(inverse.Apply(three, three, three, three, two), std::invalid_argument);
    EXPECT_THROW(inverse.ApplyToPairs(three, three), std::invalid_argument);
    EXPECT_THROW(inverse.ApplyToPairs(four, four, one), std::invalid_argument);
    EXPECT_EQ(inverse.ApplyToPairs(four, four, two), 2U) << "zeros lie beyond the fold";
}

TEST(PointMap, MapsPairsAsPointsAndMarksTheLost) {
    const Transformation t{.type = Type::kAffine, .a = {5, 2, 1}, .b = {7, 0, 3}};
    const PointMap maps[] = {t, *ExactInverse::Of(t)};
    for (const PointMap& map : maps) {
        const double beyond = &map == maps ? 1e308 : HUGE_VAL;  // one coordinate, or both
        const std::vector<double> pairs{1, 2, beyond, 4, -3, 8};
        std::vector<double> out(pairs.size());
        std::vector<NoSource> troubles(3);
        EXPECT_EQ(MapPairs(map, pairs, out, troubles), 1U);
        EXPECT_TRUE(std::isnan(out[2]) && std::isnan(out[3]));
        EXPECT_EQ(troubles, (std::vector{NoSource::kNone, NoSource::kNotReached, NoSource::kNone}));
        EXPECT_EQ((Point{out[4], out[5]}), ImageOf(map, {-3, 8}).point);
    }
    EXPECT_EQ(ImageOf(maps[0], {-3, 8}).point, (Point{7, 31}));
    EXPECT_DOUBLE_EQ(ImageOf(maps[1], {7, 31}).point.first, -3);
}

TEST(Distortion, IsThatOfATurnedScaling) {
    constexpr double kPi = std::numbers::pi;
    for (const double turn : {0.3, -2.9, 3.1}) {
        const Transformation t = Turned(Type::kAffine5, turn, 0.8, 1.25, {5, -7});
        const Distortion d = DistortionAt(t, {31, 17});
        EXPECT_DOUBLE_EQ(d.greatestScale, 1.25);
        EXPECT_DOUBLE_EQ(d.leastScale, 0.8);
        EXPECT_DOUBLE_EQ(d.areaScale, 1.0);
        EXPECT_DOUBLE_EQ(MeanScaleAt(t, {31, 17}), 1.0);
        EXPECT_NEAR(d.rotation, turn, 1e-15);
        EXPECT_NEAR(d.greatestAngleChange, 2.0 * std::asin(0.45 / 2.05), 1e-14);
        EXPECT_NEAR(*d.directionInSource, kPi / 2.0, 1e-14);
        EXPECT_NEAR(*d.directionInDestination, std::fmod(turn + 2.5 * kPi, kPi), 1e-14);
    }
    EXPECT_TRUE(DistortionOf({1.0 + 2e-12, 0, 0, 1}).directionInSource);
    EXPECT_FALSE(DistortionOf({1.0 + 5e-13, 0, 0, 1}).directionInSource);
    EXPECT_EQ(DistortionOf({}).greatestAngleChange, 0.0) << "everything becomes a point";
}

TEST(FindFold, TellsFoldsFromWhatIsNearOneAndWhere) {
    const auto corners = [](const char* name) {
        std::vector<Point> points;
        for (const Json& corner : kFolding.json["fold"][name]) points.push_back(PointOf(corner));
        return points;
    };
    const Point middle{1000, 2000};
    const auto find = [&](const std::vector<Point>& samples) {
        return FindFold(kFolding.t, samples, middle);
    };
    const Fold folded = find(corners("hull_with_fold"));
    EXPECT_EQ(folded.folding, Folding::kFolds);
    EXPECT_DOUBLE_EQ(folded.leastDeterminant, -0.5);
    EXPECT_EQ(folded.place.first, -500.0);
    const Fold nearly = find(corners("hull_without_fold"));  // 0.2 at the edge, 1.5 elsewhere
    EXPECT_EQ(nearly.folding, Folding::kNearly);
    EXPECT_NEAR(nearly.leastDeterminant, 0.2, 1e-12) << "nothing is sought outside the hull";
    EXPECT_EQ(find({{600, 1900}, {1500, 1900}, {1500, 2100}}).folding, Folding::kNone);
    EXPECT_EQ(find({}).folding, Folding::kNone);
    EXPECT_EQ(FindFold(kFolding.t, {}, {0, 2000}).folding, Folding::kFolds);

    // A fold 4 m wide between the samples: the determinant is (u² + v²) / 400 - 0.01.
    Transformation bowl{.type = Type::kPolynomial3, .b = {0, 0, 0, 1}};
    bowl.a[2] = -0.01;
    bowl.a[7] = 1.0 / 1200.0;  // u³
    bowl.a[9] = 1.0 / 400.0;   // u v²
    const std::vector<Point> samples{{-40, -40}, {40, -40}, {40, 40}, {-40, 40}, {9, 9}};
    const Fold dent = FindFold(bowl, samples, {40, 40});
    EXPECT_EQ(dent.folding, Folding::kFolds);
    EXPECT_LT(std::hypot(dent.place.first, dent.place.second), 0.1);
    EXPECT_EQ(FindFold(Case("distortion_mirrored_affine").t, samples, {}).folding, Folding::kNone);
}

}  // namespace
}  // namespace kv_tr::test
