// Documents, their actions and the history.
#include "workbench/document.h"

#include <cmath>
#include <random>

#include "workbench/project_file.h"
#include "workbench/sample.h"

namespace kv_tr::workbench {
namespace {

/// What the state of a document shows: its file, its fit and the sigma of that.
struct Shown {
    std::string file;
    Transformation result;
    std::vector<Residual> residuals;

    explicit Shown(Document& document)
        : file(ProjectText(document)),
          result(document.Adjusted().Result()),
          residuals(document.Adjusted().Residuals().begin(),
                    document.Adjusted().Residuals().end()) {}
    bool operator==(const Shown&) const = default;
};

class Actions : public WorkbenchTest {
protected:
    std::mt19937 random{20260531};

    std::size_t Below(std::size_t end) { return random() % end; }
    Places SomePlaces() {
        Places places;
        for (std::size_t i = 0; i < bench.Project().Count(); ++i) {
            if (Below(6) == 0) places.push_back(i);
        }
        return places;
    }
    void Act() {
        const std::size_t count = bench.Project().Count();
        const std::size_t place = count == 0 ? 0 : Below(count);
        if (count == 0) return void(bench.Insert(0, SampleContent(9).pairs));
        switch (Below(13)) {
            case 0: bench.Exclude(SomePlaces(), Below(2) == 0 ? "moved" : ""); break;
            case 1: bench.Include(SomePlaces()); break;
            case 2: bench.Toggle(place); break;
            case 3: bench.Insert(Below(count + 1), SampleContent(1 + Below(4)).pairs); break;
            case 4: bench.Delete(SomePlaces()); break;
            case 5: bench.SetCell(place, Column::kSourceSecond, std::to_string(Below(5000))); break;
            case 6: bench.SetCell(place, Column::kSigmaFirst, Below(2) == 0 ? "0,04" : ""); break;
            case 7: bench.SetType(static_cast<Type>(static_cast<int>(Below(9)) - 3)); break;
            case 8: bench.Swap(); break;
            case 9: bench.SetSolution(static_cast<Solution>(Below(2))); break;
            case 10: bench.SetLimit(std::to_string(Below(9))); break;
            case 11: bench.SetNote(SomePlaces(), "n" + std::to_string(Below(3))); break;
            default: bench.SetSystems({"a" + std::to_string(Below(9))}, {"b"}); break;
        }
    }
};

TEST_F(Actions, AreTakenBackAndDoneAgainToTheLastBit) {
    Open(14);
    std::vector<Shown> states{Shown(bench.Project())};
    std::vector<double> sigmas{bench.Project().Sigma0()};
    while (states.size() < 300) {
        const std::size_t before = bench.Steps().Done();
        Act();
        if (bench.Steps().Done() == before) continue;
        states.emplace_back(bench.Project());
    }
    const std::size_t last = bench.Steps().Done();
    const auto expect = [&](std::size_t done) {
        ASSERT_EQ(Shown(bench.Project()), states[done]) << "after step " << done;
        const double now = bench.Project().Sigma0();
        const double then = bench.Steps().Steps()[done].sigma0;
        EXPECT_TRUE(now == then || (std::isnan(now) && std::isnan(then))) << done;
    };
    for (std::size_t done = last; done > 0; --done) {
        bench.Undo();
        expect(done - 1);
    }
    EXPECT_FALSE(bench.Steps().CanUndo());
    for (std::size_t done = 0; done < last; ++done) {
        bench.Redo();
        expect(done + 1);
    }
    for (int time = 0; time < 20; ++time) {
        const std::size_t done = Below(last + 1);
        bench.GoTo(done);
        expect(done);
    }
    // The fit does not depend on how the state came about.
    Document fresh(ProjectOf(ProjectText(bench.Project())).content);
    EXPECT_EQ(Shown(fresh), Shown(bench.Project()));
}

TEST_F(Actions, KnowWhatIsSaved) {
    Open(9);
    EXPECT_FALSE(bench.IsDirty());
    bench.Toggle(3);
    bench.MarkSaved();
    bench.Toggle(4);
    EXPECT_TRUE(bench.IsDirty());
    bench.Undo();
    EXPECT_FALSE(bench.IsDirty());
    bench.Undo();
    bench.Swap();  // what was saved cannot be reached any more
    EXPECT_TRUE(bench.IsDirty());
    EXPECT_EQ(bench.Steps().SavedAt(), std::nullopt);
    EXPECT_FALSE(bench.Steps().CanRedo());
}

TEST_F(Actions, LowerTheTypeWithTheStepThatNeedsIt) {
    Open(10);
    ASSERT_TRUE(bench.SetType(Type::kPolynomial3));
    ASSERT_TRUE(bench.Exclude({2, 5}, "destroyed"));
    EXPECT_EQ(bench.Project().Current().type, Type::kPolynomial2);
    EXPECT_EQ(LastSentence(),
              "Excluded 2 points. Because of the exclusions the type is now: 2. order of "
              "polynomial transformation");
    EXPECT_FALSE(bench.SetType(Type::kPolynomial3));
    EXPECT_EQ(bench.Notice(),
              "3. order of polynomial transformation needs 10 points; 8 are in use.");
    bench.Undo();
    EXPECT_EQ(bench.Project().Current().type, Type::kPolynomial3);
    EXPECT_EQ(bench.Project().NoteAt(5), "") << "the note is part of the step";
    EXPECT_EQ(bench.Notice(), "");

    EXPECT_FALSE(bench.Exclude({0, 1, 2, 3, 4, 5, 6, 7, 8})) << "one would remain";
    EXPECT_EQ(bench.Project().UsedCount(), 10U);
    EXPECT_TRUE(bench.Exclude({0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(bench.Project().Current().type, Type::kHelmert);
}

TEST_F(Actions, AreNoStepsWhenNothingChanges) {
    Open(9);
    const std::string id = "P3";
    EXPECT_FALSE(bench.SetCell(2, Column::kIdentifier, id));
    EXPECT_FALSE(bench.SetCell(2, Column::kSourceFirst, "x1"));
    EXPECT_EQ(bench.Notice(), "A number is needed here, not “x1”.");
    EXPECT_FALSE(bench.SetCell(2, Column::kSigmaFirst, "-1"));
    EXPECT_FALSE(bench.SetCell(2, Column::kResidual, "1"));
    EXPECT_FALSE(bench.SetLimit("0.2"));
    EXPECT_FALSE(bench.SetAlpha("1"));
    EXPECT_FALSE(bench.Include({1}));
    EXPECT_FALSE(bench.Delete({}));
    EXPECT_EQ(bench.Steps().Steps().size(), 1U);
    EXPECT_TRUE(bench.SetCell(2, Column::kDestinationFirst, " 12,5 "));
    EXPECT_EQ(bench.Project().PointAt(2).destination.first, 12.5);
    EXPECT_TRUE(bench.Project().Current().origins[1].isEdited);
}

TEST_F(Actions, FollowTheStripAndTheLanguage) {
    Content content = SampleContent(12, 0.001);
    content.pairs[4].point.destination.first += 0.7;
    bench.Begin(std::move(content), {.phrase = Phrase::kStepOpened, .values = {"a.dat", "12"}});
    const StripLine line = bench.Project().Strip()[0];
    EXPECT_EQ(line.offer, "Exclude P5");
    EXPECT_EQ(bench.Project().WorstSuspect(), 4U);
    EXPECT_TRUE(bench.TakeOffer(line));
    EXPECT_FALSE(bench.TakeOffer(line)) << "the line is out of date";
    EXPECT_LT(bench.Steps().Steps()[1].sigma0, 0.1 * bench.Steps().Steps()[0].sigma0);
    SetMlLanguage(kHungarian, {});
    EXPECT_EQ(LastSentence(), "Kizárva: P5");
    EXPECT_EQ(bench.Steps().Steps()[0].text.Sentence(), "Megnyitva: a.dat, 12 pont");
}

TEST_F(Actions, SayWhatCannotBeFitted) {
    Content content;
    bench.Begin(std::move(content), {});
    EXPECT_FALSE(bench.Project().HasFit());
    EXPECT_TRUE(bench.Project().Strip().empty());
    // The first point on the centroid: where the affine fit with 5 unknowns cannot begin.
    Content centred;
    const Point places[] = {{0, 0}, {10, 1}, {-10, -1}, {3, 7}, {-3, -7}};
    for (const Point place : places)
        centred.pairs.push_back({.point = {"c", place, {place.first + 5, place.second * 2}}});
    centred.settings.type = Type::kAffine5;
    bench.Begin(std::move(centred), {});
    EXPECT_FALSE(bench.Project().HasFit());
    ASSERT_EQ(bench.Project().Strip().size(), 1U);
    EXPECT_TRUE(bench.TakeOffer(bench.Project().Strip()[0]));
    EXPECT_TRUE(bench.Project().HasFit());
}

TEST_F(Actions, CountStandardDeviationsOnlyWhereAllHaveSuitableOnes) {
    using Use = Document::SigmaUse;
    Open(9);
    EXPECT_EQ(bench.Project().UseOfSigmas(), Use::kMissing);
    for (std::size_t i = 0; i < 9; ++i) bench.SetCell(i, Column::kSigmaFirst, "0.02");
    EXPECT_EQ(bench.Project().UseOfSigmas(), Use::kCount);
    EXPECT_TRUE(bench.Project().Findings().Assessed().globalTest.has_value());
    bench.SetType(Type::kHelmert);
    EXPECT_EQ(bench.Project().UseOfSigmas(), Use::kUnequal) << "P2 has 0.013 as well";
    EXPECT_FALSE(bench.Project().Findings().Assessed().globalTest.has_value());
}

TEST(FirstType, IsOneThatThePointsDetermine) {
    std::vector<ControlPoint> points = test::PointsBy(test::General(Type::kAffine), 5);
    EXPECT_EQ(FirstTypeFor(points), Type::kAffine);
    EXPECT_EQ(FirstTypeFor(std::span(points).first(2)), Type::kHelmert);
    for (ControlPoint& point : points) point.source.second = 3 * point.source.first + 7;
    EXPECT_EQ(FirstTypeFor(points), Type::kHelmert) << "on a line";
}

}  // namespace
}  // namespace kv_tr::workbench
