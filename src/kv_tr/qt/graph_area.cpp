// Painting the residual graph, on the screen and on pages.
#include "kv_tr/qt/graph_area.h"

#include <QMouseEvent>
#include <QPainter>
#include <cmath>
#include <set>
#include <utility>

namespace kv_tr {
namespace {

QFont LabelFont(QFont font, bool bold) {
    font.setPixelSize(static_cast<int>(GraphPage::kLabelSize));
    font.setBold(bold);
    return font;
}

void PaintLabels(QPainter& painter, const GraphMark& mark) {
    const QFontMetricsF metrics = painter.fontMetrics();
    for (std::size_t corner = 0; corner < mark.labels.size(); ++corner) {
        if (mark.labels[corner].empty()) continue;
        const QString text = QString::fromStdString(mark.labels[corner]);
        const bool left = corner == GraphMark::kUpperLeft || corner == GraphMark::kLowerLeft;
        const bool upper = corner == GraphMark::kUpperLeft || corner == GraphMark::kUpperRight;
        const double x =
            mark.place.first + (left ? -kLabelGap - metrics.horizontalAdvance(text) : kLabelGap);
        const double top = mark.place.second - (upper ? metrics.height() : 0);
        painter.drawText(QPointF(x, top + metrics.ascent()), text);
    }
}

/// Which of very many marks still get their texts: one in a place, where several could not be read.
class Crowd {
public:
    explicit Crowd(std::size_t markCount) : isCrowd_(markCount > 5000) {}

    bool HasRoom(Point place) {
        constexpr double kRoom = 8;
        return !isCrowd_ ||
               taken_.insert({std::lround(place.first / kRoom), std::lround(place.second / kRoom)})
                   .second;
    }

private:
    bool isCrowd_;
    std::set<std::pair<long, long>> taken_;
};

/// Paints the marks that reach into the clip; colours are those that can be read on the background.
void PaintMarks(QPainter& painter, const std::vector<GraphMark>& marks, const QColor& background,
                const QRectF& clip) {
    const QFont fonts[] = {LabelFont(painter.font(), false), LabelFont(painter.font(), true)};
    constexpr double kReach = 400;  // no label is longer
    const QRectF reach = clip.adjusted(-kReach, -kReach, kReach, kReach);
    Crowd crowd(marks.size());
    for (const GraphMark& mark : marks) {
        const auto [x, y] = mark.place;
        if (!reach.contains(x, y)) continue;
        painter.setPen(QPen(ReadableOn(background, mark.colour), mark.bold ? 2 : 1));
        painter.drawLine(QLineF(x - kCrossArm, y, x + kCrossArm, y));
        painter.drawLine(QLineF(x, y - kCrossArm, x, y + kCrossArm));
        if (!crowd.HasRoom(mark.place)) continue;
        painter.setFont(fonts[mark.bold ? 1 : 0]);
        PaintLabels(painter, mark);
    }
}

}  // namespace

QColor ReadableOn(const QColor& background, Colour colour) {
    const QColor wanted(colour.red, colour.green, colour.blue);
    if (background.lightness() >= 128) return wanted;
    return QColor::fromHslF(wanted.hslHueF() < 0 ? 0 : wanted.hslHueF(), wanted.hslSaturationF(),
                            colour == kBlack ? 0.95F : 0.75F);
}

void PaintPage(QPainter& painter, const GraphPage& page) {
    painter.fillRect(QRectF(0, 0, page.width, page.height), Qt::white);
    painter.setPen(Qt::black);
    QFont font = painter.font();
    const auto line = [&](double base, double size, bool bold, const std::string& text) {
        font.setPixelSize(static_cast<int>(size));
        font.setBold(bold);
        painter.setFont(font);
        painter.drawText(QPointF(0, base), QString::fromStdString(text));
    };
    double base = GraphPage::kTitleSize;
    line(base, GraphPage::kTitleSize, true, page.title);
    for (const std::string& text : page.lines) {
        line(base += GraphPage::kLineStep, GraphPage::kLineSize, false, text);
    }
    const QRectF plan(0, 0, page.width, page.height - page.planTop);
    painter.save();
    painter.translate(0, page.planTop);
    painter.setClipRect(plan);
    PaintMarks(painter, page.marks, Qt::white, plan);
    painter.setClipping(false);
    painter.setPen(QPen(Qt::gray, 1));
    painter.drawRect(plan.adjusted(1, 1, -1, -1));
    painter.restore();
}

GraphArea::GraphArea(ResidualPlan& plan, QWidget* parent) : QWidget(parent), plan_(plan) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

void GraphArea::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    PaintMarks(painter, plan_.Marks(), palette().color(QPalette::Base), event->rect());
}

void GraphArea::resizeEvent(QResizeEvent*) { plan_.Resize(width(), height()); }

void GraphArea::mouseDoubleClickEvent(QMouseEvent*) { plan_.PicBoxDblClick(); }

void GraphArea::mouseReleaseEvent(QMouseEvent* event) { emit MouseReleased(event->position()); }

}  // namespace kv_tr
