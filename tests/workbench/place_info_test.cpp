// Figures at a place of the plan.
#include "workbench/place_info.h"

#include <cmath>

#include "workbench/sample.h"

namespace kv_tr::workbench {
namespace {

class PlaceOfAPlan : public WorkbenchTest {
protected:
    PlaceInfo info{bench.Project()};
};

TEST_F(PlaceOfAPlan, AreTheSameFromEitherSystemAndFollowTheFit) {
    Open(12, 0.05);
    for (const Type type : {Type::kAffine, Type::kPolynomial2}) {
        bench.SetType(type);
        const Point inside = bench.Project().PointAt(5).source;
        const auto from = info.AtSource(inside);
        ASSERT_TRUE(from.has_value());
        const auto to = info.AtDestination(from->image);
        ASSERT_TRUE(to.has_value());
        EXPECT_NEAR(to->source.first, inside.first, 1e-6);
        EXPECT_NEAR(to->sigma, from->sigma, 1e-9);
        EXPECT_FALSE(from->IsOutside());
        EXPECT_GT(from->sigma, 0.0);
        EXPECT_LT(from->sigma, bench.Project().Sigma0() * 1.0001) << "at a control point";
        const auto far = info.AtSource({inside.first + 9000, inside.second});
        EXPECT_TRUE(far->IsOutside());
        EXPECT_GT(far->sigma, 3 * from->sigma);
    }
    bench.SetType(Type::kHelmert3);
    EXPECT_NEAR(info.AtSource({1500, 2500})->Ppm(), 0.0, 1e-6) << "keeps lengths";
    const double before = info.AtSource({1500, 2500})->rotation;
    bench.Swap();
    EXPECT_NEAR(info.AtSource({1500, 2500})->rotation, -before, 0.05);
    bench.Begin({}, {});
    EXPECT_FALSE(info.AtSource({1, 2}).has_value());
}

}  // namespace
}  // namespace kv_tr::workbench
