// Painting plans with Qt.
#include "kv_tr/qt/plan_painter.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPixmap>
#include <QPolygonF>
#include <cmath>

namespace kv_tr {
namespace {

QColor InkOf(PlanInk ink, PlanPaper paper) {
    const Colour colour = ColourOf(ink, paper);
    return {colour.red, colour.green, colour.blue};
}

class Painting {
public:
    Painting(QPainter& painter, PlanPaper paper) : painter_(painter), paper_(paper) {}

    void operator()(const PlanLines& lines) const {
        QPen pen(InkOf(lines.ink, paper_), lines.width);
        if (lines.isDashed) pen.setDashPattern({6 / lines.width, 4 / lines.width});
        painter_.setPen(pen);
        QList<QLineF> segments;
        segments.reserve(static_cast<qsizetype>(lines.segments.size()));
        for (const auto& [from, to] : lines.segments) {
            segments.emplaceBack(from.first, from.second, to.first, to.second);
        }
        painter_.drawLines(segments);
    }

    void operator()(const PlanSymbols& symbols) const {
        constexpr std::size_t kMany = 200;
        if (symbols.places.size() > kMany &&
            painter_.paintEngine()->type() == QPaintEngine::Raster) {
            return Stamp(symbols);
        }
        for (const auto& [x, y] : symbols.places) Draw(painter_, symbols, {x, y});
    }

    void operator()(const PlanText& text) const {
        QFont font = painter_.font();
        font.setPixelSize(static_cast<int>(std::lround(text.size)));
        font.setBold(text.isBold);
        painter_.save();
        painter_.setFont(font);
        painter_.setPen(InkOf(text.ink, paper_));
        const QString shown = QString::fromStdString(text.text);
        double x = text.base.first;
        if (text.anchor != PlanText::Anchor::kStart) {
            const double width = painter_.fontMetrics().horizontalAdvance(shown);
            x -= text.anchor == PlanText::Anchor::kEnd ? width : width / 2;
        }
        painter_.drawText(QPointF(x, text.base.second), shown);
        painter_.restore();
    }

private:
    void Draw(QPainter& painter, const PlanSymbols& symbols, QPointF at) const {
        const QColor colour = InkOf(symbols.ink, paper_);
        const bool isHollow = symbols.shape == PlanSymbols::Shape::kCircle;
        painter.setPen(isHollow ? QPen(colour, symbols.width) : QPen(Qt::NoPen));
        painter.setBrush(isHollow ? QBrush(Qt::NoBrush) : QBrush(colour));
        if (isHollow || symbols.shape == PlanSymbols::Shape::kDisc) {
            painter.drawEllipse(at, symbols.size, symbols.size);
            return;
        }
        QPolygonF polygon;
        for (const Point corner : CornersOf(symbols.shape)) {
            polygon << at + symbols.size * QPointF(corner.first, corner.second);
        }
        painter.drawPolygon(polygon);
    }

    void Stamp(const PlanSymbols& symbols) const {
        const double ratio = painter_.device()->devicePixelRatioF();
        const int side = 2 * static_cast<int>(std::ceil(symbols.size * 1.2 + symbols.width));
        QPixmap stamp((QSizeF(side, side) * ratio).toSize());
        stamp.fill(Qt::transparent);
        QPainter painter(&stamp);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(ratio, ratio);
        Draw(painter, symbols, {side / 2.0, side / 2.0});
        painter.end();
        QList<QPainter::PixmapFragment> fragments;
        fragments.reserve(static_cast<qsizetype>(symbols.places.size()));
        for (const auto& [x, y] : symbols.places) {
            fragments << QPainter::PixmapFragment::create({x, y}, stamp.rect(), 1 / ratio,
                                                          1 / ratio);
        }
        painter_.drawPixmapFragments(fragments.constData(), static_cast<int>(fragments.size()),
                                     stamp);
    }

    QPainter& painter_;
    PlanPaper paper_;
};

}  // namespace

void PaintPlan(QPainter& painter, const PlanPicture& picture, PlanPaper paper) {
    painter.setRenderHint(QPainter::Antialiasing);
    const Painting painting(painter, paper);
    const PlanRect& frame = picture.frame;
    const QRectF rect(frame.left, frame.top, frame.Width(), frame.Height());
    painter.save();
    painter.setClipRect(rect, Qt::IntersectClip);
    for (const PlanItem& item : picture.inside) std::visit(painting, item);
    painter.restore();
    painter.setPen(InkOf(PlanInk::kFaint, paper));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect.adjusted(0.5, 0.5, -0.5, -0.5));
    for (const PlanItem& item : picture.outside) std::visit(painting, item);
}

}  // namespace kv_tr
