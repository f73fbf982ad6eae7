// A workbench in surroundings of a test, with control points that determine every type.
#pragma once

#include <gtest/gtest.h>

#include "helpers/recording_platform.h"
#include "helpers/sample_points.h"
#include "workbench/workbench.h"

namespace kv_tr::workbench {

/// Points "P1", "P2", ... of a bent plane, some with a standard deviation, a note or a mark.
inline Content SampleContent(std::size_t count, double error = 0.02) {
    Content content;
    for (ControlPoint& point : test::PointsBy(test::General(Type::kAffine), count, error)) {
        const std::size_t i = content.pairs.size();
        point.id = "P" + std::to_string(i + 1);
        content.pairs.push_back({.point = point});
        if (i % 4 == 1) content.pairs.back().sigma = {0.011, 0.013};
        if (i % 5 == 2) content.pairs.back().note = "Kő \"" + std::to_string(i) + "\"";
    }
    content.settings.type = Type::kAffine;
    content.settings.source = {"régi", AxisMapping::kSw, ""};
    content.settings.destination = {"új", AxisMapping::kEn, "EPSG:23700"};
    content.settings.origins = {{"a.dat", "abc", false}, {"b.csv", "", false}};
    return content;
}

class WorkbenchTest : public testing::Test {
protected:
    test::RecordingPlatform platform;
    test::TemporaryFolder folder;
    Workbench bench;

    void Open(std::size_t count, double error = 0.02) {
        bench.Begin(SampleContent(count, error), {.phrase = Phrase::kStepNew});
    }
    std::string LastSentence() const {
        return bench.Steps().Steps()[bench.Steps().Done()].text.Sentence();
    }
};

}  // namespace kv_tr::workbench
