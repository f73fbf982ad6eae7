// The page that the main window shows while nothing is open.
#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "workbench/start_form.h"
#include "workbench/texts/phrase.h"

class QBoxLayout;
class QLabel;
class QListWidget;
class QPushButton;
class QVBoxLayout;

namespace kv_tr::desktop {

/// What to do first: open, paste, samples, what was open before. Follows the language when Redraw
/// is called or the application changes its language.
class StartPage : public QWidget {
    Q_OBJECT

public:
    explicit StartPage(QWidget* parent = nullptr);

    /// What was open before, the newest first.
    void SetRecent(std::vector<workbench::RecentRow> rows);
    /// Shows everything anew in the current language.
    void Redraw();

signals:
    /// The user wants to choose files.
    void OpenWanted();
    void ListsWanted();
    void PasteWanted();
    /// A sample or a recent file.
    void FileWanted(const QString& fileName);
    /// A recent file that the user wants off the list.
    void ForgetWanted(const QString& fileName);

protected:
    void changeEvent(QEvent* event) override;

private:
    QPushButton* AddButton(QVBoxLayout& column, const QString& icon);
    void RedrawSamples();
    void RedrawRecent();

    std::vector<workbench::RecentRow> rows_;
    QLabel* summary_ = nullptr;
    QLabel* first_ = nullptr;
    QPushButton* open_ = nullptr;
    QPushButton* lists_ = nullptr;
    QPushButton* paste_ = nullptr;
    QLabel* samplesTitle_ = nullptr;
    QVBoxLayout* samples_ = nullptr;
    QLabel* recentTitle_ = nullptr;
    QListWidget* recent_ = nullptr;
    QLabel* nothing_ = nullptr;
};

}  // namespace kv_tr::desktop
