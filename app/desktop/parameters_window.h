// The parameters in use, and what they do to a point, a direction and a file.
#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "desktop/desktop_form.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace kv_tr::desktop {

class ParametersWindow : public QDialog {
public:
    /// The file window is opened by the owner.
    ParametersWindow(DesktopForm& form, const std::function<void()>& transformFile,
                     QWidget* parent);

protected:
    void done(int result) override;

private:
    using Action = std::function<void()>;

    QGroupBox* MakeParameters();
    QGroupBox* MakePoint();
    QGroupBox* MakeDirection();
    QPushButton* MakeButton(Text text, const Action& action);
    QGroupBox* MakeGroup(Text text);
    QLabel* MakeLabel(Text text);
    QLabel* MakeLabel(Text text, QWidget* input);
    QLineEdit* MakeInput(const char* name);
    QLabel* MakeResult(const char* name);

    void Redraw();
    void RedrawResults();

    DesktopForm& form_;
    std::vector<std::function<void()>> captions_;  // each sets a text in the current language
    struct Lettered {
        Text text;
        std::function<void(const QString&)> setCaption;
    };
    std::vector<Lettered> lettered_;  // the captions that have a letter for Alt
    std::vector<QWidget*> needParameters_;
    QPushButton* invert_ = nullptr;
    QLabel* type_ = nullptr;
    QPlainTextEdit* listing_ = nullptr;
    QLabel* formula_ = nullptr;
    std::array<QLineEdit*, 2> point_{};
    std::array<QLabel*, 2> image_{};
    QLineEdit* direction_ = nullptr;
    QComboBox* unit_ = nullptr;
    QLineEdit* length_ = nullptr;
    QLabel* directionImage_ = nullptr;
    QLabel* uncertainty_ = nullptr;
    Subscription changed_;
};

}  // namespace kv_tr::desktop
