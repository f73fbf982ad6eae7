// The pictures on buttons and in menus.
#pragma once

#include <QIcon>
#include <QString>

namespace kv_tr::desktop {

/// The icon of a name: open, save, undo, redo, swap, exclude, include, next_suspect, report,
/// export, transform, start, paste. It is drawn at any size in the colour of the palette's texts,
/// also after the palette has changed. Of another name an icon that shows nothing.
QIcon Icon(const QString& name);

}  // namespace kv_tr::desktop
