// Languages as hosts switch them, and the tables against each other.
#include "support/ml_strings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "helpers/recording_platform.h"
#include "support/code_page.h"
#include "support/errors.h"
#include "support/strings/table.h"

namespace kv_tr {
namespace {

TEST(GetMlString, TakesTheTextFromTheTablesWhateverTheDefault) {
    const test::RecordingPlatform platform;
    EXPECT_EQ(GetMlString(97, "wrong"), "To few GCPs for this transformation!");
    EXPECT_EQ(GetMlString(30, "wrong"), "Helmert/Affin");  // English lacks it
    SetMlLanguage(1031, "Deutsch");
    EXPECT_EQ(CurrentMlLanguage(), kHungarian);
    EXPECT_EQ(GetMlString(97, "wrong"), "A választott transzformációhoz kevés a közös pont!");
    try {
        ADD_FAILURE() << GetMlString(183, "wrong");
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), ErrorNumber::kTextMissing);
        EXPECT_NE(std::string(error.what()).find("183"), std::string::npos);
    }
}

TEST(FollowHostLanguage, PreparesOnceAndListensAsLongAsTheSubscriptionLives) {
    struct CountingTexts : EmbeddedTexts {
        using EmbeddedTexts::EmbeddedTexts;
        void Prepare() override { ++prepared; }
        int prepared = 0;
    };
    auto owned = std::make_unique<CountingTexts>(kSerbian);
    CountingTexts& texts = *owned;
    Platform platform;
    platform.texts = std::move(owned);
    const ComponentScope scope(std::move(platform));
    {
        const Subscription first = FollowHostLanguage();
        EXPECT_EQ(CurrentMlLanguage(), kSerbian);
        const Subscription second = FollowHostLanguage();
        texts.SwitchLanguage(kRomanian, "");
        EXPECT_EQ(CurrentMlLanguage(), kRomanian);
    }
    texts.SwitchLanguage(kVietnamese, "");
    EXPECT_EQ(CurrentMlLanguage(), kRomanian);
    EXPECT_EQ(texts.prepared, 1);
}

/// The placeholders of a text such as "{0} of {1}" and the number of "|" of a filter.
std::pair<std::set<std::string>, std::ptrdiff_t> Shape(const std::string& text) {
    std::set<std::string> placeholders;
    for (auto at = text.find('{'); at != text.npos; at = text.find('{', at + 1))
        placeholders.insert(text.substr(at, 3));
    return {placeholders, std::ranges::count(text, '|')};
}

TEST(StringTables, AgreeWithTheHungarianOneAndFitTheirCodePage) {
    std::map<int, std::string> hungarian;
    for (const auto& [id, text] : HungarianStrings()) hungarian[id] = text;
    for (const auto& [table, page] : {std::pair{HungarianStrings(), CodePage::kWindows1250},
                                      {EnglishStrings(), CodePage::kWindows1250}}) {
        for (const auto& [id, row] : table) {
            const std::string text = row;
            ASSERT_TRUE(hungarian.contains(id)) << text;
            EXPECT_EQ(Shape(text), Shape(hungarian[id])) << text;
            EXPECT_EQ(std::ranges::count(ToCodePage(text, page), '?'),
                      std::ranges::count(text, '?'));
        }
    }
}

}  // namespace
}  // namespace kv_tr
