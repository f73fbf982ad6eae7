// The surroundings of the component in a Qt program.
#include "kv_tr/qt/qt_platform.h"

#include <QApplication>
#include <QFileDialog>
#include <QGridLayout>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <array>

#include "kv_tr/forms/dialogs.h"
#include "kv_tr/published/GCommonDialog.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/qt/cursor_scope.h"
#include "kv_tr/qt/file_name.h"
#include "kv_tr/qt/mnemonics.h"
#include "kv_tr/qt/qt_windows.h"
#include "kv_tr/qt/qt_words.h"
#ifdef KV_TR_PDF
#include "kv_tr/pdf/report_pdf.h"
#endif

namespace kv_tr {
namespace {

struct ButtonText {
    Answer answer;
    QMessageBox::StandardButton button;
    Text text;
};

constexpr std::array kOk{ButtonText{Answer::kOk, QMessageBox::Ok, Text::kOk}};
constexpr std::array kYesNoCancel{ButtonText{Answer::kYes, QMessageBox::Yes, Text::kYes},
                                  ButtonText{Answer::kNo, QMessageBox::No, Text::kNo},
                                  ButtonText{Answer::kCancel, QMessageBox::Cancel, Text::kCancel}};

std::span<const ButtonText> TextsOf(Buttons buttons) {
    if (buttons == Buttons::kOk) return kOk;
    return std::span(kYesNoCancel).first(buttons == Buttons::kYesNo ? 2 : 3);
}

QMessageBox::Icon IconOf(Icon icon) {
    switch (icon) {
        case Icon::kInformation: return QMessageBox::Information;
        case Icon::kExclamation: return QMessageBox::Warning;
        default: return QMessageBox::NoIcon;
    }
}

/// Makes a message box at least as wide as its title, which may say what the text is.
void MakeRoomForTitle(QMessageBox& box) {
    constexpr int kButtonsOfFrame = 160;
    const int width = box.fontMetrics().horizontalAdvance(box.windowTitle()) + kButtonsOfFrame;
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout())) {
        grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
    }
}

class QtMessages : public MessageBox {
public:
    Answer Show(const Message& message) override {
        UseQtWords();
        QMessageBox box(QApplication::activeWindow());
        box.setTextFormat(Qt::PlainText);
        box.setText(QString::fromStdString(message.text).remove('\r'));
        box.setWindowTitle(message.title.empty() ? QApplication::applicationDisplayName()
                                                 : QString::fromStdString(message.title));
        box.setIcon(IconOf(message.icon));
        const auto texts = TextsOf(message.buttons);
        QStringList captions;
        for (const ButtonText& text : texts)
            captions << QString::fromStdString(Translated(text.text));
        captions = WithMnemonics(captions);
        for (const ButtonText& text : texts) {
            QPushButton* button = box.addButton(text.button);
            button->setText(captions.takeFirst());
            if (text.answer == message.defaultAnswer) box.setDefaultButton(button);
        }
        MakeRoomForTitle(box);
        const OwnCursors cursors;
        const int pressed = box.exec();
        const auto answer = std::ranges::find(texts, pressed, &ButtonText::button);
        return answer == texts.end() ? message.defaultAnswer : answer->answer;
    }
};

/// The filter as Qt writes it: a description and patterns in brackets, separated by blanks.
QString FilterText(const FileFilter& filter) {
    const QString description = QString::fromStdString(filter.description);
    const QString patterns =
        QString::fromStdString(filter.pattern).replace("*.*", "*").replace(';', ' ').trimmed();
    return description.section("(*", 0, 0).trimmed() + " (" + patterns + ")";
}

/// The types of a request; without any those of its extension, and all files.
QStringList FilterTexts(const FileRequest& request) {
    QStringList texts;
    for (const FileFilter& filter : request.filters) texts << FilterText(filter);
    if (!texts.isEmpty() || request.defaultExtension.empty()) return texts;
    const QString all = QString::fromStdString(Translated(Text::kAllFilesFilter));
    return {"*." + QString::fromStdString(request.defaultExtension),
            FilterText({all.section('|', 1, 1).toStdString(), "*.*"})};
}

/// "txt" of "Log (*.txt)", nothing for all files.
QString ExtensionOf(const QString& filterText) {
    return filterText.section("*.", 1, 1).section(' ', 0, 0).remove(')');
}

class QtFiles : public FileChooser {
public:
    std::optional<FileChoice> ChooseToOpen(const FileRequest& request) override {
        // A file that may be missing is one to be written.
        if ((request.flags & kFileMustExist) == 0) return ChooseTarget(request, true);
        UseQtWords();
        QFileDialog dialog(QApplication::activeWindow());
        dialog.setFileMode(QFileDialog::ExistingFile);
        return Choose(dialog, request, Text::kOk);
    }
    std::optional<FileChoice> ChooseToSave(const FileRequest& request) override {
        return ChooseTarget(request, (request.flags & kOverwritePrompt) != 0);
    }

private:
    static std::optional<FileChoice> ChooseTarget(const FileRequest& request, bool ask) {
        UseQtWords();
        QFileDialog dialog(QApplication::activeWindow());
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setOption(QFileDialog::DontConfirmOverwrite);  // asked in the user's language
        auto choice = Choose(dialog, request, Text::kSave);
        while (choice && ask && QFile::exists(QString::fromStdString(choice->path)) &&
               !MayReplace(choice->path)) {
            dialog.selectFile(QString::fromStdString(choice->path));
            choice = Run(dialog, request);
        }
        return choice;
    }

    static std::optional<FileChoice> Choose(QFileDialog& dialog, const FileRequest& request,
                                            Text accept) {
        const QStringList filters = FilterTexts(request);
        dialog.setWindowTitle(QString::fromStdString(request.title));
        const std::string& folder = request.initialFolder;
        dialog.setDirectory(QString::fromStdString(folder.empty() ? InitDir() : folder));
        dialog.setDefaultSuffix(QString::fromStdString(request.defaultExtension));
        dialog.setNameFilters(filters);
        dialog.selectNameFilter(filters.value(request.filterIndex - 1));
        dialog.selectFile(QString::fromStdString(request.fileName));
        const std::pair<QFileDialog::DialogLabel, Text> labels[] = {
            {QFileDialog::Accept, accept},
            {QFileDialog::Reject, Text::kCancel},
            {QFileDialog::LookIn, Text::kFolderLabel},
            {QFileDialog::FileName, Text::kFileNameLabel},
            {QFileDialog::FileType, Text::kFileTypeLabel}};
        for (const auto& [label, text] : labels) {
            dialog.setLabelText(label, QString::fromStdString(Translated(text)));
        }
        QObject::connect(&dialog, &QFileDialog::filterSelected, [&dialog](const QString& filter) {
            const QString extension = ExtensionOf(filter);
            if (!extension.isEmpty()) dialog.setDefaultSuffix(extension);
        });
        return Run(dialog, request);
    }

    static std::optional<FileChoice> Run(QFileDialog& dialog, const FileRequest& request) {
        const OwnCursors cursors;
        if (dialog.exec() != QDialog::Accepted) return std::nullopt;
        const auto chosenFilter = dialog.nameFilters().indexOf(dialog.selectedNameFilter());
        return FileChoice{.path = FileNameOf(dialog.selectedFiles().value(0)),
                          .filterIndex = static_cast<std::int32_t>(chosenFilter) + 1,
                          .flags = request.flags};
    }
};

PdfMaker MakerOfReports() {
#ifdef KV_TR_PDF
    return [](const Report& report) { return PdfOf(report); };
#else
    return {};
#endif
}

}  // namespace

Platform QtPlatform(std::int32_t hostLanguage) {
    return {.messages = std::make_unique<QtMessages>(),
            .files = std::make_unique<QtFiles>(),
            .settings = {},
            .texts = std::make_unique<EmbeddedTexts>(hostLanguage),
            .dialogs = MakeDialogs(QtWindows()),
            .makePdf = MakerOfReports()};
}

}  // namespace kv_tr
