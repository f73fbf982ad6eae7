// Small pictures in SVG: icons, and the points of recent projects.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QSizeF>

class QPainter;
class QRectF;

namespace kv_tr::desktop {

/// Paints a picture as large as the place allows, in its middle. Understood are paths of absolute
/// M, L, H, V, C and Z, circles, and fill, stroke and stroke-width on them or on the whole; the
/// colour "currentColor" is the one given. Anything else is passed over.
void PaintSvg(QPainter& painter, const QRectF& place, const QByteArray& svg, const QColor& colour);

}  // namespace kv_tr::desktop
