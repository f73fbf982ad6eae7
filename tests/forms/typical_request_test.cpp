// The whole request of a host, from the first dialog to the applied record, with scripts in place
// of windows.
#include <gtest/gtest.h>

#include "helpers/engine_test.h"
#include "kv_tr/forms/dialogs.h"

namespace kv_tr::test {
namespace {

TEST(bChooseTrPrm, LeadsFromAPointsFileToTheAppliedRecord) {
    std::vector<std::string> steps;
    std::string stopAt;
    const auto goesOn = [&](const std::string& step) {
        steps.push_back(step);
        return step != stopAt;
    };
    bool closed = false;
    RecordingPlatform platform(
        kEnglish,
        MakeDialogs({.tr =
                         [&](frmTr& form) {
                             form.RadioTrType(0);
                             form.Grid1DblClick(1, 1);
                             if (goesOn("adjust")) form.cmdApplyResult();
                         },
                     .chooseParameters = [&](frmChoosePrm& form) { closed = form.cmdCalc(); },
                     .controlPoints =
                         [&](frmXY4Tr& form) {
                             if (goesOn("list " + form.ControlTexts().TextOf("frmXY4Tr")))
                                 form.cmdOk();
                         }}));
    const TemporaryFolder folder;
    const std::string points = folder.File("points.dat");
    const std::string broken = folder.File("broken.dat");
    WriteFile(points, "Bad 5 5 9 9\nA 0 0 100 200\nB 10 0 110 200\nC 0 10 100 210\n");
    WriteFile(broken, "A x\n");
    clsTr transformation;
    TR_PRM before = transformation.udtTrPrm();
    before.dA0 = 7.0;
    transformation.udtTrPrm(before);

    const std::string list = "list " + points;
    const std::tuple<std::string, std::string, std::vector<std::string>> stops[] = {
        {"", "", {}},
        {broken, "", {}},
        {points, list, {list}},
        {points, "adjust", {list, "adjust"}}};
    for (const auto& [file, stop, expected] : stops) {
        SCOPED_TRACE(file + stop);
        stopAt = stop;
        steps.clear();
        platform.choices.push_back(file.empty() ? std::nullopt
                                                : std::optional(FileChoice{.path = file}));
        EXPECT_FALSE(transformation.bChooseTrPrm());
        EXPECT_FALSE(closed);
        EXPECT_EQ(steps, expected);
        EXPECT_EQ(Map(transformation, {1.0, 2.0}).first, 8.0) << "the owner's record is untouched";
    }

    stopAt.clear();
    platform.choices.push_back(FileChoice{.path = points});
    EXPECT_TRUE(transformation.bChooseTrPrm());
    EXPECT_TRUE(closed);
    EXPECT_EQ(transformation.udtTrPrm().eType, TR_HELMERT);
    ExpectNear(Map(transformation, {3.0, 4.0}), {103.0, 204.0}, 1e-9);
}

TEST(bChooseTrPrm, TakesTheEditorsAndForgetsWhatACancelledOneHasLeft) {
    bool confirmEditor = false;
    bool (frmChoosePrm::*button)() = &frmChoosePrm::cmdAffin;
    const RecordingPlatform platform(
        kEnglish, MakeDialogs({.chooseParameters = [&](frmChoosePrm& form) { (form.*button)(); },
                               .affine =
                                   [&](frmAffinTrPrm& form) {
                                       form.txtTrPrm(0, "5");
                                       if (confirmEditor) form.cmdOk();
                                   },
                               .polynomial =
                                   [&](frmPoliTrPrm& form) {
                                       form.cmdDAT2M1();
                                       form.cmdOk();
                                   },
                               .chooseNational =
                                   [](frmChooseDAT2M1& form) {
                                       form.lstTr(3);
                                       form.cmdOk();
                                   }}));
    clsTr transformation;
    EXPECT_FALSE(transformation.bChooseTrPrm());
    EXPECT_EQ(double{transformation.udtTrPrm().dA0}, 0.0);
    confirmEditor = true;
    EXPECT_TRUE(transformation.bChooseTrPrm());
    EXPECT_EQ(double{transformation.udtTrPrm().dA0}, 5.0);
    button = &frmChoosePrm::cmdPoli;
    EXPECT_TRUE(transformation.bChooseTrPrm());
    EXPECT_EQ(transformation.udtTrPrm().eType, TR_HER_STG);
    button = &frmChoosePrm::cmdOk;
    EXPECT_TRUE(transformation.bChooseTrPrm());
    EXPECT_EQ(transformation.udtTrPrm().eType, TR_HER_STG);

    EXPECT_FALSE(transformation.bLoadByDAT2M1());
    EXPECT_EQ(transformation.udtTrPrm().eType, TR_STG_HKR) << "as published for HER-STG";
}

}  // namespace
}  // namespace kv_tr::test
