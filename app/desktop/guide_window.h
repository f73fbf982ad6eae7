// The user guide in a window.
#pragma once

#include <QDialog>

class QTextBrowser;

namespace kv_tr::desktop {

/// Shows the guide that the program carries, with its pictures.
class GuideWindow : public QDialog {
    Q_OBJECT

public:
    explicit GuideWindow(QWidget* parent);

    /// Shows the chapter of a heading; the beginning where there is none.
    void ShowChapter(const QString& heading);

private:
    QTextBrowser* text_;
};

}  // namespace kv_tr::desktop
