// Control characters in foreign text, wherever the component shows it.
#include "kv_tr/text/control_characters.h"

#include <gtest/gtest.h>

#include <iostream>

#include "helpers/recording_platform.h"
#include "kv_tr/published/console_platform.h"
#include "kv_tr/published/message.h"

namespace kv_tr {
namespace {

TEST(WithoutControls, ReplacesEveryControlCharacterAndNothingElse) {
    for (unsigned code = 0; code < 0x800; ++code) {
        const char two[] = {static_cast<char>(0xC0 | code >> 6),
                            static_cast<char>(0x80 | code % 64)};
        const std::string text =
            code < 0x80 ? std::string(1, static_cast<char>(code)) : std::string(two, 2);
        const bool control = code < 0x20 || (code >= 0x7F && code <= 0x9F);
        EXPECT_EQ(WithoutControls("a" + text + "b"), control ? "a_b" : "a" + text + "b") << code;
    }
    EXPECT_EQ(WithoutControls("Győr\xC2\x9B\x1B[31m\r\n\t"), "Győr__[31m___");
    EXPECT_EQ(WithoutControls("1\r\n\t2", "\n\t"), "1_\n\t2");
    EXPECT_EQ(WithoutControls("a\xC2"), "a\uFFFD") << "breaks off";
}

TEST(WithoutControls, IsWhatMessagesShow) {
    test::RecordingPlatform platform;
    ReportOpenFailure("a\r\nb");
    MayReplace("\x1B[2J");
    EXPECT_EQ(platform.TakeTexts(), (std::vector<std::string>{"File open error:a__b",
                                                              "_[2J exists already. Replace it?"}));
    testing::internal::CaptureStderr();
    ConsolePlatform().messages->Show({.text = "1\r\n\t2\x1B\xC2\x9B"
                                              "3",
                                      .title = "\b"});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "_: 1\n\t2__3\n");
}

}  // namespace
}  // namespace kv_tr
