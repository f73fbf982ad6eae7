// The user guide in a window.
#include "desktop/guide_window.h"

#include <QBoxLayout>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>

#include "desktop/ui_text.h"
#include "kv_tr/qt/form_window.h"

namespace kv_tr::desktop {

GuideWindow::GuideWindow(QWidget* parent) : QDialog(parent), text_(new QTextBrowser(this)) {
    setWindowTitle(UiText(workbench::Phrase::kGuide));
    text_->setOpenExternalLinks(true);
    text_->setSource(QUrl("qrc:/guide/user-guide.md"), QTextDocument::MarkdownResource);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(text_);
    resize(RememberedSize("Guide", {900, 700}));
}

void GuideWindow::ShowChapter(const QString& heading) {
    show();
    raise();
    activateWindow();
    for (QTextBlock block = text_->document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0 || block.text() != heading) continue;
        text_->setTextCursor(QTextCursor(text_->document()->lastBlock()));
        text_->setTextCursor(QTextCursor(block));  // from below, so that the heading is on top
        text_->verticalScrollBar()->setValue(text_->verticalScrollBar()->value() +
                                             text_->cursorRect().top());
        return;
    }
}

}  // namespace kv_tr::desktop
