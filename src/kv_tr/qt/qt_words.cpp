// Qt's own words in the component's language.
#include "kv_tr/qt/qt_words.h"

#include <QApplication>
#include <QEvent>
#include <QHash>
#include <QLibraryInfo>
#include <QTranslator>
#include <QWidget>
#include <algorithm>
#include <string_view>

#include "kv_tr/published/ml_strings.h"
#include "kv_tr/qt/qt_words_table.h"

namespace kv_tr {
namespace {

/// The parts of Qt whose words are in the table. A program has words of its own in other parts.
constexpr std::string_view kParts[] = {"QPlatformTheme",
                                       "QGnomeTheme",
                                       "QDialogButtonBox",
                                       "QFileDialog",
                                       "QFileSystemModel",
                                       "QLineEdit",
                                       "QWidgetTextControl",
                                       "QAbstractSpinBox",
                                       "QScrollBar",
                                       "QMessageBox",
                                       "QPrintDialog",
                                       "QPrintWidget",
                                       "QPageSetupWidget",
                                       "QPrintSettingsOutput",
                                       "QPrintPropertiesDialog",
                                       "QPrintPropertiesWidget",
                                       "QPrintPreviewDialog",
                                       "QProgressDialog",
                                       "QInputDialog",
                                       "QErrorMessage",
                                       "QTabBar",
                                       "QDockWidget",
                                       "QComboBox",
                                       "QWhatsThisAction",
                                       "QUndoStack",
                                       "QUndoGroup",
                                       "QAbstractFileIconProvider"};

/// Looks up what Qt asks for in the language of that moment, so that nothing has to be exchanged
/// when the language changes.
class QtWords : public QTranslator {
public:
    explicit QtWords(QObject* parent) : QTranslator(parent) {
        const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        hasHungarian_ = hungarian_.load("qtbase_hu", folder) ||
                        hungarian_.load("qtbase_hu", ":/translations");  // of the program itself
        for (const QtWord& word : QtWordTable()) words_.insert(QByteArray(word.english), &word);
    }

    bool isEmpty() const override { return false; }

    QString translate(const char* part, const char* english, const char* meaning,
                      int number) const override {
        const std::int32_t language = CurrentMlLanguage();
        if (language == kHungarian) {
            return hasHungarian_ ? hungarian_.translate(part, english, meaning, number) : QString();
        }
        if (part == nullptr || english == nullptr || std::ranges::count(kParts, part) == 0)
            return {};
        const QtWord* word =
            words_.value(QByteArray::fromRawData(english, qsizetype(qstrlen(english))));
        if (word == nullptr) return {};
        switch (language) {
            case kRomanian: return QString::fromUtf8(word->romanian);
            case kVietnamese: return QString::fromUtf8(word->vietnamese);
            case kSerbian: return QString::fromUtf8(word->serbian);
            default: return {};
        }
    }

private:
    QTranslator hungarian_;
    bool hasHungarian_ = false;
    QHash<QByteArray, const QtWord*> words_;
};

constexpr const char* kName = "kv_tr words of Qt";

}  // namespace

void UseQtWords() {
    if (qApp->findChild<QTranslator*>(kName, Qt::FindDirectChildrenOnly) != nullptr) return;
    auto* words = new QtWords(qApp);
    words->setObjectName(kName);
    QCoreApplication::installTranslator(words);
}

void ShowQtWordsAnew() {
    for (QWidget* window : QApplication::topLevelWidgets())
        QCoreApplication::postEvent(window, new QEvent(QEvent::LanguageChange));
}

}  // namespace kv_tr
