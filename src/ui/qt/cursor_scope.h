// A mouse pointer for the whole program while a scope lasts.
#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace kv_tr {

class CursorScope {
public:
    explicit CursorScope(Qt::CursorShape shape) { QGuiApplication::setOverrideCursor(shape); }
    ~CursorScope() { QGuiApplication::restoreOverrideCursor(); }
    CursorScope(const CursorScope&) = delete;
    CursorScope& operator=(const CursorScope&) = delete;
};

}  // namespace kv_tr
