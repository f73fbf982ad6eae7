// Real words through both code pages, the Vietnamese alphabet in every form, ill-formed UTF-8.
#include "support/code_page.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

namespace kv_tr {
namespace {

using enum CodePage;

TEST(CodePage, WordsOfTheFileLanguagesGoThereAndBack) {
    const struct {
        CodePage page;
        std::string_view utf8, bytes;
    } words[] = {
        {kWindows1250, "", ""},
        {kWindows1250, "Helmert 1:1000\t~\r\n", "Helmert 1:1000\t~\r\n"},
        {kWindows1250, "árvíztűrő tükörfúrógép",
         "\xE1rv\xEDzt\xFBr\xF5 t\xFCk\xF6rf\xFAr\xF3g\xE9p"},
        {kWindows1250, "ÁRVÍZTŰRŐ", "\xC1RV\xCDZT\xDBR\xD5"},
        {kWindows1250, "Încărcare în câmp", "\xCEnc\xE3rcare \xEEn c\xE2mp"},
        {kWindows1250, "Učitavanje čvorišta, žđć", "U\xE8itavanje \xE8vori\x9Ata, \x9E\xF0\xE6"},
        {kWindows1258, "Việt Nam", "Vi\xEA\xF2t Nam"},
        {kWindows1258, "Đường đẳng trị", "\xD0\xFD\xF5\xCCng \xF0\xE3\xD2ng tri\xF2"},
        {kWindows1258, "ế Ợ ỹ À ờ", "\xEA\xEC \xD5\xF2 y\xDE \xC0 \xF5\xCC"},
    };
    for (const auto& [page, utf8, bytes] : words) {
        SCOPED_TRACE(utf8);
        EXPECT_EQ(ToCodePage(utf8, page), bytes);
        EXPECT_EQ(FromCodePage(bytes, page), utf8);
    }
}

TEST(CodePage, CedillaLettersStandForTheRomanianOnesWithCommaBelow) {
    EXPECT_EQ(ToCodePage("Șoseaua și Țările, stații", kWindows1250),
              "\xAAoseaua \xBAi \xDE\xE3rile, sta\xFEii");
    EXPECT_EQ(FromCodePage("\xAA\xBA\xDE\xFE", kWindows1250), "ŞşŢţ");
}

TEST(CodePage, EveryVietnameseLetterInEveryFormComesBackComposed) {
    const std::string tones[] = {"", "\u0300", "\u0309", "\u0303", "\u0301", "\u0323"};
    // clang-format off
    const struct {
        std::string base, modifier, letters;  // one letter a tone
    } vowels[] = {
        {"a", "", "a à ả ã á ạ"},        {"A", "", "A À Ả Ã Á Ạ"},
        {"a", "\u0306", "ă ằ ẳ ẵ ắ ặ"},  {"A", "\u0306", "Ă Ằ Ẳ Ẵ Ắ Ặ"},
        {"a", "\u0302", "â ầ ẩ ẫ ấ ậ"},  {"A", "\u0302", "Â Ầ Ẩ Ẫ Ấ Ậ"},
        {"e", "", "e è ẻ ẽ é ẹ"},        {"E", "", "E È Ẻ Ẽ É Ẹ"},
        {"e", "\u0302", "ê ề ể ễ ế ệ"},  {"E", "\u0302", "Ê Ề Ể Ễ Ế Ệ"},
        {"i", "", "i ì ỉ ĩ í ị"},        {"I", "", "I Ì Ỉ Ĩ Í Ị"},
        {"o", "", "o ò ỏ õ ó ọ"},        {"O", "", "O Ò Ỏ Õ Ó Ọ"},
        {"o", "\u0302", "ô ồ ổ ỗ ố ộ"},  {"O", "\u0302", "Ô Ồ Ổ Ỗ Ố Ộ"},
        {"o", "\u031B", "ơ ờ ở ỡ ớ ợ"},  {"O", "\u031B", "Ơ Ờ Ở Ỡ Ớ Ợ"},
        {"u", "", "u ù ủ ũ ú ụ"},        {"U", "", "U Ù Ủ Ũ Ú Ụ"},
        {"u", "\u031B", "ư ừ ử ữ ứ ự"},  {"U", "\u031B", "Ư Ừ Ử Ữ Ứ Ự"},
        {"y", "", "y ỳ ỷ ỹ ý ỵ"},        {"Y", "", "Y Ỳ Ỷ Ỹ Ý Ỵ"},
    };
    // clang-format on
    const auto roundTrip = [](const std::string& text) {
        return FromCodePage(ToCodePage(text, kWindows1258), kWindows1258);
    };
    for (const auto& [base, modifier, letters] : vowels) {
        const std::string toneless = letters.substr(0, letters.find(' '));
        std::istringstream words(letters);
        for (const auto& tone : tones) {
            std::string letter;
            words >> letter;
            SCOPED_TRACE(letter);
            EXPECT_EQ(roundTrip(letter), letter);
            EXPECT_EQ(roundTrip(base + modifier + tone), letter);
            EXPECT_EQ(roundTrip(toneless + tone), letter);
            // Marks at different sides of the letter may change places, two above it may not.
            if (tone == "\u0323" || modifier == "\u031B") {
                EXPECT_EQ(roundTrip(base + tone + modifier), letter);
            }
        }
    }
    EXPECT_EQ(roundTrip("Đđ"), "Đđ");
}

TEST(CodePage, EveryByteIsReadAndWrittenBack) {
    for (const CodePage page : {kWindows1250, kWindows1258}) {
        for (int value = 0; value < 256; ++value) {
            SCOPED_TRACE(value);
            const std::string byte(1, static_cast<char>(value));
            EXPECT_EQ(ToCodePage(FromCodePage(byte, page), page), byte);
        }
        EXPECT_EQ(FromCodePage("\x80\x81", page), "€\u0081");  // 81 is unassigned
    }
}

TEST(CodePage, MarksJoinTheLetterBeforeThemWhereTheyCan) {
    EXPECT_EQ(FromCodePage("A\xCC\xEA\xEC", kWindows1258), "Àế");
    EXPECT_EQ(FromCodePage("\xECq\xECy\xEC\xEC", kWindows1258), "\u0301q\u0301ý\u0301");
    EXPECT_EQ(ToCodePage("\u0301q\u0301", kWindows1258), "\xECq\xEC");
    EXPECT_EQ(ToCodePage("e\u0301u\u030Bs\u030CS\u0326", kWindows1250), "\xE9\xFB\x9A\xAA");
}

TEST(CodePage, WhatThePageLacksBecomesAQuestionMark) {
    EXPECT_EQ(ToCodePage("m² ế 水 😀 \u0080.", kWindows1250), "m? ? ? ? ?.");
    EXPECT_EQ(ToCodePage("m² ő 水 Ș š", kWindows1258), "m\xB2 ? ? ? ?");
}

TEST(Utf8, EveryIllFormedPartIsReplacedOnce) {
    const struct {
        std::string_view text, valid, bytes;
    } cases[] = {
        {"\xE1rv", "\uFFFDrv", "?rv"},
        {"a\x80z", "a\uFFFDz", "a?z"},
        {"\xE1\xBA", "\uFFFD", "?"},                               // breaks off at the end
        {"\xF0\x9F\x98z\xC3", "\uFFFDz\uFFFD", "?z?"},             // breaks off before a letter
        {"\xC0\xAF", "\uFFFD\uFFFD", "??"},                        // overlong
        {"\xE0\x9F\xBF", "\uFFFD\uFFFD\uFFFD", "???"},             // overlong
        {"\xF0\x8F\xBF\xBF", "\uFFFD\uFFFD\uFFFD\uFFFD", "????"},  // overlong
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD", "???"},             // surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD", "????"},  // above U+10FFFF
        {"\xFF\xC3\xA9", "\uFFFDé", "?\xE9"},
    };
    for (const auto& [text, valid, bytes] : cases) {
        SCOPED_TRACE(valid);
        EXPECT_EQ(ValidUtf8(text), valid);
        EXPECT_EQ(ToCodePage(text, kWindows1250), bytes);
    }
    for (const std::string_view text : {"", "plain", "\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF",
                                        "\U00010000\U0010FFFF", "e\u0301 tükörfúrógép Việt"})
        EXPECT_EQ(ValidUtf8(text), text);
}

TEST(DisplayWidth, CountsLettersWithoutTheirMarks) {
    EXPECT_EQ(DisplayWidth(""), 0U);
    EXPECT_EQ(DisplayWidth("tükörfúrógép"), 12U);
    EXPECT_EQ(DisplayWidth("Việt 😀"), 6U);
    EXPECT_EQ(DisplayWidth("Vie\u0323\u0302t"), 4U);
    EXPECT_EQ(DisplayWidth("a\xE1\xBAz"), 3U);
}

}  // namespace
}  // namespace kv_tr
