// Numbers, code pages and the tables of texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <regex>
#include <set>

#include "helpers/recording_platform.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/text/code_page.h"
#include "kv_tr/text/strings/table.h"

/// What the leak sanitizer shall pass over: the C library loses a copy of LOCPATH with each locale.
extern "C" const char* __lsan_default_suppressions() { return "leak:__argz_add_sep"; }

namespace kv_tr {
namespace {

using enum CodePage;

TEST(FormatFixed, WritesEveryKindOfValue) {
    const test::RecordingPlatform platform;
    const std::tuple<double, std::uint8_t, std::uint8_t, std::string> cases[] = {
        // clang-format off
        {3.14159, 3, 10, "     3.142"}, {-1234567.5, 1, 5, "-1234567.5"}, {999.9995, 3, 0, "1000.000"},
        {0.5, 0, 0, "1"}, {0.49999999999999994, 0, 0, "0"}, {-0.0004, 3, 0, "0.000"}, {1e-300, 3, 0, "0.000"},
        {1.0005, 3, 0, "1.001"}, {1.0004999999999997, 3, 0, "1.000"}, {0.1, 20, 0, "0.10000000000000000000"},
        {1e23, 1, 0, "1" + std::string(23, '0') + ".0"}, {1e300, 0, 0, "1" + std::string(300, '0')},
        {HUGE_VAL, 3, 5, "  inf"}, {-HUGE_VAL, 3, 0, "-inf"}, {-std::nan(""), 3, 0, "nan"},
        // clang-format on
    };
    for (const auto& [value, decimals, width, text] : cases)
        EXPECT_EQ(FormatFixed(value, decimals, width), text);
}

TEST(FormatSci, HasSixteenDigitsAndThirtyColumns) {
    const test::RecordingPlatform platform;
    EXPECT_EQ(FormatSci(1234.5), "         1.234500000000000E+03");
    EXPECT_EQ(FormatSci(-5e-324), "       -5.000000000000000E-324");
    DecimalSeparator(',');
    EXPECT_EQ(FormatSci(-1.2345678901234565), "        -1,234567890123457E+00");
}

#ifndef _WIN32  // where locales are made otherwise
TEST(DecimalSeparator, IsThatOfTheUsersLocale) {
    const test::TemporaryFolder locales;
    const std::string name = locales.File("hu_HU.UTF-8");
    ASSERT_EQ(std::system(("localedef -i hu_HU -f UTF-8 " + name).c_str()), 0);
    setenv("LOCPATH", locales.File("").c_str(), 1);
    for (const char separator : {',', '.'}) {
        setenv("LC_ALL", separator == ',' ? "hu_HU.UTF-8" : "xx_XX", 1);  // which the system lacks
        EXPECT_EQ((ComponentScope{Platform{}}, DecimalSeparator()), separator);
    }
    unsetenv("LC_ALL");
    unsetenv("LOCPATH");
}
#endif

TEST(PadLeft, CountsColumnsAndCleanNumberLineLeavesSingleBlanks) {
    EXPECT_EQ(PadLeft("e\u0301u\u0302\u0323ő😀\xE1\xBA", 6), " e\u0301u\u0302\u0323ő😀\xE1\xBA");
    EXPECT_EQ(PadLeft("longer", 3), "longer");
    EXPECT_EQ(CleanNumberLine("  1,5;'2'\t3  ", true), "1.5 2 3");
    EXPECT_EQ(CleanNumberLine("  1,5;'2'\t3  ", false), "1 5 2 3");
}

TEST(ParseNumber, TakesWholeTextsOnly) {
    const std::pair<std::string, double> numbers[] = {
        {"007", 7},    {"+1.5", 1.5},    {"-.5", -0.5},    {"5.", 5},
        {"1e3", 1000}, {"1.e+2", 100.0}, {"2.5E-1", 0.25}, {"5e-324", 5e-324}};
    for (const auto& [text, value] : numbers) {
        std::string withComma = text;
        std::ranges::replace(withComma, '.', ',');
        EXPECT_EQ(ParseNumber(text), value);
        EXPECT_EQ(ParseNumber(text, true), value);
        EXPECT_EQ(ParseNumber(withComma, true), value);
        EXPECT_EQ(ParseNumber(withComma).has_value(), withComma == text);
    }
    for (const char* text :
         {"",    "+",    "-.",   "e5",    "1e",    "1e+",   "1e2.5", "--1", "+-1",   " 1", "1 ",
          "nan", "-inf", "0x10", "1.2.3", "1,2.3", "1'000", "1d5",   "12a", "1e400", "١"})
        EXPECT_FALSE(ParseNumber(text) || ParseNumber(text, true)) << text;
}

TEST(CodePage, WordsOfTheFileLanguagesGoThereAndBack) {
    const std::tuple<CodePage, std::string, std::string> words[] = {
        {kWindows1250, "árvíztűrő fúrógép ŰŐ", "\xE1rv\xEDzt\xFBr\xF5 f\xFAr\xF3g\xE9p \xDB\xD5"},
        {kWindows1250, "Učitavanje čvorišta, žđć", "U\xE8itavanje \xE8vori\x9Ata, \x9E\xF0\xE6"},
        {kWindows1258, "Đường đẳng trị", "\xD0\xFD\xF5\xCCng \xF0\xE3\xD2ng tri\xF2"},
        {kWindows1258, "ế Ợ ỹ À ờ đ", "\xEA\xEC \xD5\xF2 y\xDE \xC0 \xF5\xCC \xF0"},
    };
    for (const auto& [page, utf8, bytes] : words) {
        EXPECT_EQ(ToCodePage(utf8, page), bytes);
        EXPECT_EQ(FromCodePage(bytes, page), utf8);
    }
    const std::string vietnamese =  // every letter with every tone
        "à ả ã á ạ ằ ẳ ẵ ắ ặ ầ ẩ ẫ ấ ậ è ẻ ẽ é ẹ ề ể ễ ế ệ ì ỉ ĩ í ị ò ỏ õ ó ọ ồ ổ ỗ ố ộ "
        "ờ ở ỡ ớ ợ ù ủ ũ ú ụ ừ ử ữ ứ ự ỳ ỷ ỹ ý ỵ Ằ Ẳ Ẵ Ắ Ặ Ầ Ẩ Ẫ Ấ Ậ Ề Ể Ễ Ế Ệ Ồ Ổ Ỗ Ố Ộ Ờ Ở Ỡ Ớ Ợ "
        "Ừ Ử Ữ Ứ Ự";
    EXPECT_EQ(FromCodePage(ToCodePage(vietnamese, kWindows1258), kWindows1258), vietnamese);
}

TEST(CodePage, OtherFormsOfLettersBecomeThoseOfThePageAndTheRestQuestionMarks) {
    EXPECT_EQ(ToCodePage("Șoseaua Țările stații", kWindows1250),
              "\xAAoseaua \xDE\xE3rile sta\xFEii");
    EXPECT_EQ(FromCodePage("\xAA\xBA\xDE\xFE", kWindows1250), "ŞşŢţ");
    EXPECT_EQ(FromCodePage("A\xCC\xEA\xEC", kWindows1258), "Àế");
    EXPECT_EQ(FromCodePage("\xECq\xECy\xEC\xEC", kWindows1258), "\u0301q\u0301ý\u0301");
    EXPECT_EQ(ToCodePage("e\u0301u\u030Bs\u030CS\u0326", kWindows1250), "\xE9\xFB\x9A\xAA");
    EXPECT_EQ(ToCodePage("a\u0323\u0306o\u0301\u031B", kWindows1258),
              ToCodePage("ặớ", kWindows1258));
    EXPECT_EQ(ToCodePage("m² ế 水 😀 \u0080.", kWindows1250), "m? ? ? ? ?.");
    EXPECT_EQ(ToCodePage("m² ő 水 Ș š", kWindows1258), "m\xB2 ? ? ? ?");
}

TEST(CodePage, EveryByteIsReadAndWrittenBack) {
    for (const CodePage page : {kWindows1250, kWindows1258}) {
        for (int value = 0; value < 256; ++value) {
            const std::string byte(1, static_cast<char>(value));
            EXPECT_EQ(ToCodePage(FromCodePage(byte, page), page), byte) << value;
        }
        EXPECT_EQ(FromCodePage("\x80\x81", page), "€\u0081");  // 81 is unassigned
    }
}

TEST(Utf8, EveryIllFormedPartIsReplacedOnce) {
    const std::pair<std::string, std::string> cases[] = {
        {"a\x80\xE1\xBA", "a??"},           // breaks off at the end
        {"\xF0\x9F\x98z\xC3", "?z?"},       // breaks off before a letter
        {"\xC0\xAF\xE0\x9F\xBF", "?????"},  // overlong
        {"\xED\xA0\x80", "???"},            // surrogate
        {"\xF4\x90\x80\x80\xFF", "?????"},  // above U+10FFFF
    };
    for (const auto& [text, bytes] : cases) {
        EXPECT_EQ(ToCodePage(text, kWindows1250), bytes);
        const auto valid = std::regex_replace("é" + bytes, std::regex("\\?"), "\uFFFD");
        EXPECT_EQ(ValidUtf8("é" + text), valid);
    }
}

/// The placeholders of a text such as "{0} of {1}" and the bars of a filter.
std::multiset<std::string> Shape(const std::string& text) {
    const std::regex marks(R"(\{.\}|\|)");
    return {std::sregex_token_iterator(text.begin(), text.end(), marks), {}};
}

TEST(StringTables, AgreeWithTheHungarianOneAndFitTheirCodePage) {
    std::map<Text, std::string> hungarian;
    for (const auto& [id, text] : HungarianStrings()) hungarian[id] = text;
    for (const auto table : {HungarianStrings(), EnglishStrings(), RomanianStrings(),
                             VietnameseStrings(), SerbianStrings()}) {
        EXPECT_GE(table.size() + 1, hungarian.size());  // only Hungarian has kSixParametersButton
        const bool vietnamese = table.data() == VietnameseStrings().data();
        const CodePage page = vietnamese ? kWindows1258 : kWindows1250;
        for (const auto& [id, text] : table) {
            ASSERT_TRUE(hungarian.contains(id)) << text;
            EXPECT_EQ(Shape(text), Shape(hungarian[id])) << text;
            // Files have no comma-below letters, but their cedilla ones in the same places.
            const std::string inFile = FromCodePage(ToCodePage(text, page), page);
            EXPECT_EQ(FromCodePage(ToCodePage(inFile, page), page), inFile);
            EXPECT_EQ(std::ranges::count(inFile, '?'), std::ranges::count(std::string(text), '?'));
            EXPECT_TRUE(id != Text::kLogColumns || DisplayWidth(text) == 110U);
            EXPECT_NE(std::string(text), "");
        }
    }
}

TEST(MlLanguageName, GoesWithTheList) {
    EXPECT_EQ(MlLanguageName(2) + MlLanguageName(5), "English (United Kingdom)Serbian (Latin)");
    EXPECT_EQ(MlLanguages()[5], kSerbian);
    EXPECT_EQ(MlLanguageName(6), "Invalid Language Index");
}

TEST(FillPlaces, LeavesPlacesThatNobodyFills) {
    EXPECT_EQ(FillPlaces("{1} of {0}, {2} {/}{} {0", {"a", "b"}), "b of a, {2} {/}{} {0");
}

TEST(TextFile, IsRefusedAsAWholeAtTheFirstBadLineOrTakesThePlaceOfTheTextsItHas) {
    test::RecordingPlatform platform;
    const test::TemporaryFolder folder;
    const std::string name = folder.File("texts");
    const std::string start = "[2057]\n97=Too few\n";
    for (const auto& [text, line] : {
             // clang-format off
             std::pair<std::string, int>{"97=before a language\n", 1}, {"[1031]\n", 1}, {start + "no sign\n", 3},
             {start + "183=of no text\n", 3}, {start + "97=again\n", 3}, {start + "74=\n", 3}, {start + "74=\xFF\n", 3},
             {start + "\n74=cut of", 4}, {start + "71=no bars\n", 3}, {start + "1026={0} {7} {2}\n", 3},
             {start + std::string(2 << 20, 'x'), 3},
             // clang-format on
         }) {
        platform.texts->LoadFrom(test::WriteFile(name, text));
        EXPECT_EQ(platform.TakeTexts()[0], name + ", line " + std::to_string(line) +
                                               ": damaged, so the built-in texts stay in use.");
        EXPECT_EQ(GetMlString(97, {}), "To few GCPs for this transformation!");
    }
    platform.texts->LoadFrom(
        test::WriteFile(name, "\xEF\xBB\xBF; mine\n\n[2057]\r\n97=Too few\r\n[1038]\n30= a=b\n"));
    EXPECT_EQ(GetMlString(97, {}), "Too few");
    EXPECT_EQ(GetMlString(30, {}), " a=b") << "Hungarian where English lacks it";
    EXPECT_EQ(GetMlString(74, {}), "Invalid file format!") << "its own where the file lacks it";
}

TEST(GetMlString, SpeaksEveryLanguageAndFallsBackToHungarianWhateverTheDefault) {
    const test::RecordingPlatform platform;
    const std::pair<int, std::string> cases[] = {
        {kRomanian, "Raportul transformării"},     {kVietnamese, "Báo cáo phép biến đổi"},
        {kSerbian, "Izveštaj o transformaciji"},   {kEnglish, "Transformation log"},
        {kComment, "Transzformációs jegyzőkönyv"}, {1031, "Transzformációs jegyzőkönyv"}};
    for (const auto& [language, title] : cases) {
        SetMlLanguage(language, "any");
        EXPECT_EQ(GetMlString(103, "wrong"), title);
        EXPECT_EQ(GetMlString(30, "wrong"), "Helmert/Affin");
        EXPECT_EQ(GetMlString(31, {}) == "Field/Caption", language == kComment);
        EXPECT_THROW(GetMlString(183, "wrong"), RuntimeError);
    }
}

}  // namespace
}  // namespace kv_tr
