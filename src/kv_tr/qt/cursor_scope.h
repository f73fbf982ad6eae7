// Mouse pointers while a scope lasts.
#pragma once

#include <QCursor>
#include <QGuiApplication>
#include <QList>

namespace kv_tr {

/// The pointer of the whole program says that it is busy.
class WaitCursor {
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

/// Windows show pointers of their own, although the one below them may be busy.
class OwnCursors {
public:
    OwnCursors() {
        while (const QCursor* cursor = QGuiApplication::overrideCursor()) {
            waiting_.append(*cursor);
            QGuiApplication::restoreOverrideCursor();
        }
    }
    ~OwnCursors() {
        for (; !waiting_.isEmpty(); waiting_.removeLast()) {
            QGuiApplication::setOverrideCursor(waiting_.last());
        }
    }
    OwnCursors(const OwnCursors&) = delete;
    OwnCursors& operator=(const OwnCursors&) = delete;

private:
    QList<QCursor> waiting_;  // the innermost first
};

}  // namespace kv_tr
