// Qt's own words in the languages of the component.
#include "kv_tr/qt/qt_words.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>

#include "helpers/recording_platform.h"
#include "kv_tr/qt/qt_words_table.h"

namespace kv_tr::test {
namespace {

TEST(QtWords, FollowTheLanguageAndLeaveOtherPartsAlone) {
    const RecordingPlatform platform;
    UseQtWords();
    UseQtWords();
    QDialogButtonBox box(QDialogButtonBox::Cancel);
    const auto speak = [&box](std::int32_t language) {
        SetMlLanguage(language, {});
        box.show();
        ShowQtWordsAnew();
        QCoreApplication::sendPostedEvents();
        return box.button(QDialogButtonBox::Cancel)->text().remove('&').toStdString();
    };
    EXPECT_EQ(speak(kRomanian), "Anulează");
    EXPECT_EQ(speak(kVietnamese), "Hủy");
    EXPECT_EQ(QCoreApplication::translate("QFileDialog", "Look in:"), QString("Tìm trong:"));
    EXPECT_EQ(QCoreApplication::translate("HostWindow", "Cancel"), QString("Cancel"));
    EXPECT_EQ(speak(kSerbian), "Otkaži");
    EXPECT_EQ(speak(kEnglish), "Cancel");
}

TEST(QtWords, KeepLettersForAltPlacesAndLineEndsOfTheEnglishOnes) {
    for (const QtWord& word : QtWordTable()) {
        const QString english = word.english;
        for (const char* other : {word.romanian, word.vietnamese, word.serbian}) {
            const QString text = QString::fromUtf8(other);
            for (const char* sign : {"&", "%1", "\n", "(*)", "..."}) {
                const QString of = QString(english).replace(" ...", "...");
                EXPECT_EQ(text.count(sign), of.count(sign)) << word.english << sign;
            }
            EXPECT_EQ(text.isValidUtf16(), true) << word.english;
        }
    }
}

}  // namespace
}  // namespace kv_tr::test
