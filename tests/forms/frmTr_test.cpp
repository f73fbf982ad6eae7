// The rules of the adjustment dialog, as plain calls.
#include "kv_tr/forms/frmTr.h"

#include <gtest/gtest.h>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/forms/save_report.h"
#include "kv_tr/published/pairs.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/text/sha256.h"

namespace kv_tr::test {
namespace {

using Mode = frmTr::Mode;

class FrmTr : public EngineTest {
protected:
    /// Opens the dialog, plays the script in it and closes it by its frame.
    bool Open(const std::function<void(frmTr&)>& script, bool showApplyButton = false) {
        frmTr form;
        return form.bDoModal(engine, showApplyButton, [&] { script(form); });
    }

    /// Pairs that no type maps exactly; the last one is far off.
    static std::vector<typeXYs4Tr> RoughPairs(std::size_t count) {
        auto pairs = ShiftedPairs(count);
        for (std::size_t i = 0; i < count; ++i) pairs[i].dXdest += 0.01 * double(i * 7 % 5);
        pairs.back().dYdest += 1;
        return pairs;
    }

    std::string Excluded() const {
        std::string marks;
        for (const typeXYs4Tr& pair : engine.Pairs()) marks += pair.bNotUsed ? 'x' : '.';
        return marks;
    }
};

TEST_F(FrmTr, IsTrueOnlyWhenLeftByTheButtonThatCounts) {
    engine.AddXY4Tr(ShiftedPairs(5), false);
    const auto byFrame = [](frmTr&) {};
    const auto byExit = [](frmTr& form) { form.cmdApplyResult(), form.cmdExit(); };
    const auto byApply = [](frmTr& form) { form.cmdApplyResult(); };
    EXPECT_TRUE(Open(byExit) && Open(byApply, true));
    EXPECT_FALSE(Open(byFrame) || Open(byApply) || Open(byFrame, true) || Open(byExit, true));
}

TEST_F(FrmTr, ShowsTheFiguresOfTheEngineInTheLanguageOfTheMoment) {
    engine.AddXY4Tr(RoughPairs(6), false);
    engine.ExcludeByIx(1, false);
    Open([&](frmTr& form) {
        const Captions& texts = form.ControlTexts();
        const auto figure = [](double value) { return FormatFixed(value, 3, 0); };
        EXPECT_EQ(texts.TextOf("lblKh"),
                  "RMS=" + figure(engine.dRmsErr()) + "\r\nmY=" + figure(engine.dRmsErrX()) +
                      "  mX=" + figure(engine.dRmsErrY()) + "\r\nRMS values[m]:\r\nY=" +
                      figure(engine.dMiddleErrX()) + "  X=" + figure(engine.dMiddleErrY()));
        EXPECT_EQ(texts.TextOf("cmdExit"), "Continue") << "there is nothing to apply";
        EXPECT_EQ(texts.TextOf("chkDx") + texts.TextOf("chkDy"), "DyDx");
        platform.texts->SwitchLanguage(kHungarian, "");
        EXPECT_EQ(texts.TextOf("cmdExit") + texts.TextOf("lblCnt") + texts.TextOf("lblExtCnt"),
                  "FolytatásSzámított:5Kizárt:1");
        EXPECT_EQ(texts.ToolTip("RadioTrType(8)"), "3 ismeretlen: Y,X eltolás, elforgatás. Ma=1");
    });
    EXPECT_EQ(frmTr().ControlTexts().TextOf("lblKh"), "Kh [m]:") << "there is no result";
}

TEST_F(FrmTr, FitsTheTypeOfAButton) {
    constexpr enuTR_TYPE kTypes[] = {TR_HELMERT, TR_AFFIN,  TR_POLI_1,  TR_POLI_2,    TR_POLI_3,
                                     TR_POLI_4,  TR_POLI_5, TR_AFFIN_5, TR_HELMERT_3, TR_BILINEAR};
    engine.AddXY4Tr(RoughPairs(21), false);
    Open([&](frmTr& form) {
        for (int index = 0; index < 10; ++index) {
            engine.udtTrPrm({.eType = TR_OL_METER});
            EXPECT_EQ(form.SelectedType(), 0) << "a type without a button";
            form.RadioTrType(index);
            EXPECT_EQ(engine.eTrType(), kTypes[index]);
            EXPECT_EQ(form.SelectedType(), index);
            EXPECT_NE(double{engine.udtTrPrm().dA0}, 0) << "not fitted";
        }
    });
}

TEST_F(FrmTr, GoesBackToATypeThatCanBeFitted) {
    engine.AddXY4Tr(PairsBy({{10, 10}, {0, 0}, {20, 0}, {0, 20}, {20, 20}}, Shift), false);
    platform.texts->SwitchLanguage(kHungarian, {});  // where that text is not like another
    for (const auto& [before, after] : {std::pair{TR_AFFIN, TR_AFFIN}, {TR_AFFIN_5, TR_HELMERT}}) {
        engine.eTrType(before);  // the latter was never fitted: a step down
        Open([&](frmTr& form) {
            if (before == TR_AFFIN) form.RadioTrType(7);  // the first pair is the centroid
            EXPECT_EQ(platform.TakeTexts(), Texts{"A transzformáció nem számítható !"});
            EXPECT_EQ(engine.eTrType(), after);
            EXPECT_NEAR(engine.udtTrPrm().dA0, 100, 1e-9);
        });
    }
}

TEST_F(FrmTr, FitsAgainAfterAnEdit) {
    engine.AddXY4Tr(RoughPairs(4), false);
    Open([&](frmTr& form) {
        PairTable& table = form.Table();
        form.opMode(Mode::kEdit);
        EXPECT_FALSE(form.EscLeaves());
        table.SetCell(1, 4, "5");
        const double residual = engine.Pairs()[0].dXerr;
        engine.DoCalcTr();
        EXPECT_EQ(engine.Pairs()[0].dXerr, residual);
        for (const auto& action : {std::function<void()>([&] { form.opMode(Mode::kTable); }),
                                   {[&] { form.cmdRemoveExt(); }}}) {
            form.opMode(Mode::kEdit);
            table.Grid1Click(2, 4);
            action();
            EXPECT_FALSE(table.CellEditor().visible);
        }
    });
}

TEST_F(FrmTr, ExcludesFromTheTableOnly) {
    engine.AddXY4Tr(RoughPairs(8), false);
    engine.eTrType(TR_POLI_2);
    Open([&](frmTr& form) {
        form.Grid1DblClick(0, 3);
        form.Grid1DblClick(8, 3);
        EXPECT_EQ(Excluded(), ".......x");
        EXPECT_EQ(form.Table().CurrentRow() * 10 + form.Table().CurrentColumn(), 3);
        EXPECT_LT(engine.dRmsErr(), 0.05) << "the bad pair still counts";
        form.Grid1MouseUp(7, 5);
        EXPECT_EQ(Excluded(), "....xxxx");
        form.RadioTrType(3);
        EXPECT_EQ(platform.TakeTexts(), Texts{"To few GCPs for this transformation!"});
        EXPECT_EQ(form.SelectedType(), 9) << "four are left, and a refused button changes nothing";
        form.Grid1MouseUp(5, 8);
        EXPECT_EQ(Excluded(), "........") << "upwards and downwards toggle the same rows";
        EXPECT_GT(engine.dRmsErr(), 0.05) << "not fitted again";
        form.Grid1MouseUp(2, 0);
        EXPECT_EQ(Excluded(), "xx......");
        form.cmsResetExt();
        EXPECT_EQ(Excluded(), "........");
        form.opMode(Mode::kEdit);
        form.Grid1DblClick(1, 1);
        form.Grid1MouseUp(1, 2);
        EXPECT_EQ(Excluded(), "........");
        auto pairs = RoughPairs(2);
        pairs[0].bNotUsed = true;
        engine.AddXY4Tr(pairs, false);
        form.cmdRemoveExt();
        EXPECT_EQ(Excluded(), "x.");
        const Message& told = platform.messages.back();
        EXPECT_EQ(told.title + ": " + told.text,
                  "Delete excluded GCPs: There must be at least 2 valid point pairs!");
        EXPECT_EQ(told.icon, Icon::kInformation);
    });
}

TEST_F(FrmTr, TakesALimitThatIsANumber) {
    engine.AddXY4Tr(RoughPairs(4), false);
    Open([&](frmTr& form) {
        for (const auto& [limit, text] :
             {std::pair{5.0, "5.00"}, {0.126, "0.126"}, {1e-20, "0.00000000000000000"}}) {
            engine.gdErrLimit = limit;
            form.Activate();
            EXPECT_EQ(form.LimitText(), text);
            EXPECT_TRUE(form.txtLimit(text));
            EXPECT_EQ(engine.gdErrLimit, limit) << "an untouched text keeps all digits";
        }
        EXPECT_TRUE(form.txtLimit("0,035"));
        form.Activate();
        EXPECT_EQ(form.LimitText(), "0.035");
        EXPECT_FALSE(form.txtLimit("nan"));
        EXPECT_EQ(engine.gdErrLimit, 0.035);
        EXPECT_EQ(platform.messages[0].title + platform.messages[0].text, "Wrong value!nan");
        EXPECT_EQ(platform.messages[0].icon, Icon::kExclamation);
    });
}

TEST_F(FrmTr, SavesLogAndParametersAndRemembersTheFolder) {
    engine.AddXY4Tr(RoughPairs(5), false);
    Open([&](frmTr& form) {
        form.chkInverz();
        EXPECT_TRUE(form.InverseChecked());
        EXPECT_NEAR(engine.udtTrPrm().dA0, -100, 10);
        const std::string start = InitDir();
        for (const auto& [save, file] :
             {std::pair{&frmTr::cmdSaveLog, "log.txt"}, {&frmTr::cmdSavePrm, "p.trp"}}) {
            InitDir(start);
            (form.*save)();  // cancelled
            EXPECT_EQ(platform.requests.back().initialFolder, start);
            platform.choices = {FileChoice{folder.File(file)}};
            (form.*save)();
            EXPECT_NE(ReadFile(folder.File(file)), "");
            EXPECT_EQ(InitDir() + "/", folder.File(""));
        }
    });
}

TEST_F(FrmTr, ReportsWithTheFilesOfThePointsAndAChecksumWhileTheyAreAsTheyWere) {
    const std::string bytes = ReadFile(EXAMPLES "/swiss_helmert_9.dat");
    const auto load = [&](const char* file, bool append) {
        engine.bLoadXYsFromFile(WriteFile(folder.File(file), bytes), append);
    };
    const auto reported = [&](const std::string& text) {
        return ReadFile(folder.File("r.html")).find(text) != std::string::npos;
    };
    const auto expect = [&](frmTr& form, bool one, bool two, bool checksum) {
        platform.choices = {FileChoice{folder.File("r.html")}};
        form.cmdReport();
        EXPECT_EQ(reported("one&amp;1.dat"), one);
        EXPECT_EQ(reported("two.dat"), two);
        EXPECT_EQ(reported(Sha256(bytes)), checksum);
    };
    load("gone.dat", false);
    load("one&1.dat", false);
    Open([&](frmTr& form) {
        engine.gdErrLimit = 0.0625;
        form.chkAccurate();
        expect(form, true, false, true);
        EXPECT_TRUE(reported("Accurate solution") && reported("0.0625 m") && reported("W8: "));
        EXPECT_FALSE(reported("gone.dat"));
        load("two.dat", true);
        form.cmsResetExt();
        expect(form, true, true, true);
        form.opMode(Mode::kEdit);
        form.Table().SetCell(1, 2, "591294.44");
        expect(form, true, true, false);
    });
    load("two.dat", false);
    engine.eTrType(TR_AFFIN);
    Open([&](frmTr& form) {
        expect(form, false, true, true);
        std::filesystem::last_write_time(folder.File("two.dat"), {});
        expect(form, false, true, false);
    });
    const auto along = [](double t) { return PlanePoint{100 + 10 * t, 50 + 5 * t}; };
    engine.AddXY4Tr(PairsBy({along(0), along(1), along(4), along(7)}, Shift), false);
    Open([&](frmTr& form) {
        platform.messages.clear();
        expect(form, false, false, false);
        EXPECT_TRUE(reported("W2: ") && reported("6 unknowns")) << "not determined";
    });
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(FrmTr, TellsWhyThereIsNoReport) {
    Open([&](frmTr& form) { form.cmdReport(); });
    EXPECT_EQ(platform.TakeTexts(), Texts{"There are no points to report on!"});
    EXPECT_TRUE(platform.requests.empty());
    engine.AddXY4Tr(RoughPairs(6), false);
    Open([&](frmTr& form) {
        for (const auto& [file, text] : {std::pair{"r.txt", "a report ends in"},
                                         {"r.pdf", "this program was built without PDF"},
                                         {"no/r.html", "File open error"}}) {
            platform.choices = {FileChoice{folder.File(file)}};
            form.cmdReport();
            EXPECT_EQ(platform.requests.back().filters.size(), 1U);
            EXPECT_TRUE(platform.TakeTexts().at(0).starts_with(text)) << file;
        }
        const auto make = [](const Report&) -> std::string { return "%PDF"; };
        EXPECT_TRUE(SaveReport({}, folder.File("r.PDF"), make));
        const auto fail = [](const Report&) -> std::string { throw std::runtime_error("font"); };
        EXPECT_FALSE(SaveReport({}, folder.File("r.PDF"), fail));
        EXPECT_EQ(platform.TakeTexts(), Texts{"The PDF could not be made: font"});
        EXPECT_EQ(ReadFile(folder.File("r.PDF")), "%PDF") << "the older file stays";
    });
}

}  // namespace
}  // namespace kv_tr::test
