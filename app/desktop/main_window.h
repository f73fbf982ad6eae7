// The main window of the desktop program.
#pragma once

#include <QMainWindow>
#include <array>
#include <functional>
#include <vector>

#include "desktop/desktop_form.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;

namespace kv_tr::desktop {

/// A start page until there are parameters, then what they are and what they do to a point, a
/// direction and a file.
class MainWindow : public QMainWindow {
public:
    MainWindow(DesktopForm& form, std::string version);

    /// Opens a file as if it had been dropped on the window.
    void Open(const std::string& fileName);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    using Action = std::function<void()>;

    void MakeMenus();
    QMenu* AddMenu(Text text);
    QAction* AddAction(QMenu* menu, Text text, const Action& action);
    QWidget* MakeStartPage();
    QWidget* MakeWorkPage();
    QGroupBox* MakeParameters();
    QGroupBox* MakePoint();
    QGroupBox* MakeDirection();
    QPushButton* MakeButton(Text text, const Action& action);
    QGroupBox* MakeGroup(Text text);
    QLabel* MakeLabel(Text text);
    QLabel* MakeLabel(Text text, QWidget* input);
    QLineEdit* MakeInput(const char* name);
    QLineEdit* MakeResult(const char* name);

    void TransformFile(const std::string& fileName);
    void Redraw();
    void RedrawRecent();
    void RedrawResults();

    DesktopForm& form_;
    std::string version_;
    std::vector<std::function<void()>> captions_;  // each sets a text in the current language
    struct Lettered {
        Text text;
        std::function<void(const QString&)> setCaption;
    };
    std::vector<Lettered> lettered_;  // the captions that have a letter for Alt
    QStackedWidget* pages_;
    std::vector<QAction*> needParameters_;
    QAction* startPage_ = nullptr;
    QAction* adjust_ = nullptr;
    QAction* invert_ = nullptr;
    QMenu* recentMenu_ = nullptr;
    QListWidget* recent_ = nullptr;
    QLabel* type_ = nullptr;
    QPlainTextEdit* listing_ = nullptr;
    QLabel* formula_ = nullptr;
    std::array<QLineEdit*, 2> point_{};
    std::array<QLineEdit*, 2> image_{};
    QLineEdit* direction_ = nullptr;
    QComboBox* unit_ = nullptr;
    QLineEdit* length_ = nullptr;
    QLineEdit* directionImage_ = nullptr;
    QLabel* uncertainty_ = nullptr;
    Subscription changed_;
};

}  // namespace kv_tr::desktop
