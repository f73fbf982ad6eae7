// The window that transforms files with a given transformation.
#pragma once

#include <QDialog>
#include <QTimer>
#include <memory>
#include <string>
#include <vector>

#include "workbench/texts/phrase.h"
#include "workbench/transform_files.h"

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;
class QTreeWidget;

namespace kv_tr::desktop {

/// Opens the window with these files, and waits until it is closed.
void TransformFilesWith(QWidget* owner, workbench::AppliedTransformation applied,
                        const std::vector<std::string>& fileNames = {});

class TransformFilesDialog : public QDialog {
public:
    TransformFilesDialog(workbench::AppliedTransformation applied, QWidget* owner);

    void Add(const std::vector<std::string>& fileNames);

    /// While files are transformed, Esc and closing stop the work; the window stays.
    void reject() override;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void done(int result) override;

private:
    QPushButton* MakeButton(workbench::Phrase phrase, const char* name,
                            void (TransformFilesDialog::*act)());
    QLabel* MakeLabel(const QString& text, QWidget* buddy);
    QWidget* MakeFiles();
    QWidget* MakeOptions();
    QWidget* MakeResults();
    QCheckBox* MakeOption(const QString& text, const char* name,
                          bool app::CoordinateOptions::*option);
    void GiveLetters();

    void ChooseFiles();
    void Paste();
    void RemoveFile();
    void ChooseFolder();
    void RunOrStop();
    void Start();
    void Poll();
    void Finish();

    std::size_t Current() const;
    void TakeOptions();
    void Redraw();
    void RedrawFiles();
    void RedrawOptions();
    void RedrawPreview();
    void RedrawStates();

    workbench::TransformFiles form_;
    std::unique_ptr<workbench::TransformJob> job_;
    std::vector<workbench::FileProgress> outcome_;  // of the last job, while the files are the same
    bool isDrawing_ = false;
    QTimer poll_;
    QTreeWidget* files_ = nullptr;
    QTreeWidget* preview_ = nullptr;
    QSpinBox* headerLines_ = nullptr;
    QSpinBox* decimals_ = nullptr;
    QComboBox* columns_[2] = {};
    std::vector<std::pair<QCheckBox*, bool app::CoordinateOptions::*>> options_;
    QCheckBox* inverse_ = nullptr;
    QLineEdit* folder_ = nullptr;
    QLineEdit* pattern_ = nullptr;
    QPlainTextEdit* sentences_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* run_ = nullptr;
    QWidget* settings_ = nullptr;
    QWidget* results_ = nullptr;
    std::vector<QPushButton*> fileButtons_;
    std::vector<QLabel*> labels_;
};

}  // namespace kv_tr::desktop
