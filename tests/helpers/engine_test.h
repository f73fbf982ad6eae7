// An engine in recording surroundings, with a folder of its own.
#pragma once

#include <gtest/gtest.h>

#include "helpers/recording_platform.h"
#include "kv_tr/published/clsTrCalc.h"
#include "kv_tr/published/errors.h"

namespace kv_tr::test {

/// Expects a RuntimeError of this number from a call.
void ExpectError(ErrorNumber number, auto call) {
    try {
        call();
        ADD_FAILURE() << "should have thrown";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), number);
    }
}

inline void ExpectNear(PlanePoint actual, PlanePoint expected, double tolerance) {
    EXPECT_NEAR(actual.first, expected.first, tolerance);
    EXPECT_NEAR(actual.second, expected.second, tolerance);
}

PlanePoint Map(const auto& transformation, PlanePoint point) {
    transformation.TrXY(point.first, point.second, point.first, point.second);
    return point;
}

class EngineTest : public testing::Test {
protected:
    using Texts = std::vector<std::string>;

    RecordingPlatform platform;
    TemporaryFolder folder;
    clsTrCalc engine;
    const std::string name = folder.File("file");

    void Fit(const std::vector<typeXYs4Tr>& pairs, enuTR_TYPE type) {
        engine.AddXY4Tr(pairs, false);
        engine.eTrType(type);
        engine.DoCalcTr();
    }

    std::vector<typeXYs4Tr> Pairs() const {
        std::vector<typeXYs4Tr> pairs;
        std::int32_t count = -1;
        engine.GetAllXYs(pairs, count);
        EXPECT_EQ(static_cast<std::size_t>(count), pairs.size());
        return pairs;
    }
};

}  // namespace kv_tr::test
