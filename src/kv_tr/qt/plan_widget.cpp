// The plan of control points as a widget: zoom, pan, picking.
#include "kv_tr/qt/plan_widget.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>
#include <cmath>

#include "kv_tr/forms/plan_legend.h"
#include "kv_tr/forms/plan_marks.h"
#include "kv_tr/qt/plan_painter.h"
#include "kv_tr/text/round_number.h"

namespace kv_tr {
namespace {

constexpr double kZoomStep = 1.25;
constexpr double kPanStep = 60;
constexpr double kReach = 9;  // of a click

Point PointOf(QPointF place) { return {place.x(), place.y()}; }

}  // namespace

PlanWidget::PlanWidget(QWidget* parent) : QWidget(parent), band_(QRubberBand::Rectangle, this) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setContextMenuPolicy(Qt::PreventContextMenu);  // the right button selects
}

void PlanWidget::SetData(PlanData newData) {
    index_ = PlanIndex(std::move(newData));
    std::erase_if(selected_,
                  [this](std::size_t pair) { return pair >= index_.Data().pairs.size(); });
    FitFrame();
}

void PlanWidget::SetWords(PlanWords words) {
    words_ = std::move(words);
    FitFrame();
}

void PlanWidget::SetOptions(const PlanOptions& options) {
    options_ = options;
    FitFrame();
}

void PlanWidget::SetSelection(std::vector<std::size_t> pairs) {
    std::erase_if(pairs, [this](std::size_t pair) { return pair >= index_.Data().pairs.size(); });
    selected_ = std::move(pairs);
    Redraw();
}

void PlanWidget::SetBackground(std::optional<PlanBackground> background) {
    background_ = std::move(background);
    update();
}

void PlanWidget::ScaleVectors(bool longer) {
    constexpr double kStep = 0.75;  // less than from one round number to the next
    const double bar = VectorScaleOf(index_, view_, options_).bar;
    if (!(bar > 0)) return;
    options_.vectorBar = longer ? RoundBelow(bar * kStep) : RoundAbove(bar / kStep);
    FitFrame();
}

void PlanWidget::ShowAll() {
    showsAll_ = true;
    FitFrame();
}

void PlanWidget::Zoom(double factor) { ZoomAbout(factor, {view_.width / 2, view_.height / 2}); }

void PlanWidget::ShowPair(std::size_t pair) {
    if (pair >= index_.Data().pairs.size()) return;
    const Point place = index_.Pair(pair).place;
    const bool hasPlace = std::isfinite(place.first) && std::isfinite(place.second);
    if (!hasPlace || view_.Frame().Contains(view_.ToSurface(place))) return;
    PlanView moved = view_;
    moved.centre = place;
    SetView(moved);
}

void PlanWidget::Redraw() {
    picture_.reset();
    update();
}

void PlanWidget::FitFrame() {
    constexpr double kLeastPart = 0.55;  // of the height, whatever is cut off the legend
    const double frameWidth = std::max(1, width());
    const double frameHeight =
        std::max({1.0, kLeastPart * height(),
                  height() - LegendHeight(index_, words_, options_, frameWidth)});
    view_ = showsAll_ ? ViewOf(index_.Extent(), frameWidth, frameHeight)
                      : view_.Resized(frameWidth, frameHeight);
    Redraw();
}

void PlanWidget::SetView(const PlanView& view) {
    view_ = view;
    showsAll_ = false;
    Redraw();
}

void PlanWidget::ZoomAbout(double factor, Point about) {
    constexpr double kFarthest = 20;        // of the view that shows everything
    constexpr double kNearest = 1e-6;       // metres a unit
    constexpr double kCoordinates = 1e-13;  // of the greatest coordinate, whose digits end there
    const double all = ViewOf(index_.Extent(), view_.width, view_.height).metresPerUnit;
    const double greatest = std::max(std::abs(view_.centre.first), std::abs(view_.centre.second));
    const double wanted = view_.metresPerUnit / factor;
    const double least = std::min(all, std::max(kNearest, kCoordinates * greatest));
    const double scale = std::clamp(wanted, least, all * kFarthest);
    SetView(view_.Zoomed(view_.metresPerUnit / scale, about));
}

std::optional<std::size_t> PlanWidget::PairAt(QPointF place) const {
    if (!view_.Frame().Contains(PointOf(place))) return {};
    return index_.PairAt(view_, PointOf(place), kReach);
}

bool PlanWidget::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    ShowTip(*static_cast<QHelpEvent*>(event));
    return true;
}

void PlanWidget::ShowTip(const QHelpEvent& event) {
    const auto pair = PairAt(event.pos());
    if (!pair) return QToolTip::hideText();
    const QString tip = QString::fromStdString(PlanTip(index_, words_, *pair));
    QToolTip::showText(event.globalPos(), "<p style='white-space:pre'>" + tip.toHtmlEscaped(),
                       this);
}

void PlanWidget::paintEvent(QPaintEvent*) {
    const QPalette::ColorRole role = QPalette::Base;
    const bool isDark = palette().color(role).lightness() < 128;
    if (!picture_) picture_ = DrawPlan(index_, words_, options_, view_, selected_);
    QPainter painter(this);
    if (background_) PaintBackground(painter, *background_, view_);
    PaintPlan(painter, *picture_, isDark ? PlanPaper::kDark : PlanPaper::kLight);
    if (!hasFocus()) return;
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
}

void PlanWidget::resizeEvent(QResizeEvent*) { FitFrame(); }

void PlanWidget::wheelEvent(QWheelEvent* event) {
    constexpr double kNotch = 120;
    const int turned = event->angleDelta().y();
    if (turned != 0) ZoomAbout(std::pow(kZoomStep, turned / kNotch), PointOf(event->position()));
    event->accept();
}

void PlanWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton && event->button() != Qt::RightButton) return;
    drag_ = Drag::kPressed;
    pressedAt_ = draggedTo_ = event->pos();
}

void PlanWidget::mouseMoveEvent(QMouseEvent* event) {
    if (view_.Frame().Contains(PointOf(event->position()))) {
        emit PlaceHovered(view_.ToPlan(PointOf(event->position())));
    } else {
        emit PlaceLeft();
    }
    const bool begins = drag_ == Drag::kPressed && (event->pos() - pressedAt_).manhattanLength() >=
                                                       QApplication::startDragDistance();
    if (begins) {
        const bool selects =
            event->buttons() == Qt::RightButton || event->modifiers().testFlag(Qt::ShiftModifier);
        drag_ = selects ? Drag::kSelecting : Drag::kMoving;
        band_.setVisible(selects);
        if (!selects) setCursor(Qt::ClosedHandCursor);
    }
    if (drag_ == Drag::kSelecting) band_.setGeometry(QRect(pressedAt_, event->pos()).normalized());
    if (drag_ == Drag::kMoving) {
        const QPoint by = event->pos() - draggedTo_;
        draggedTo_ = event->pos();
        Move(by.x(), by.y());
    }
}

void PlanWidget::mouseReleaseEvent(QMouseEvent* event) {
    const bool isAdded = event->modifiers().testFlag(Qt::ControlModifier);
    const Drag ended = std::exchange(drag_, Drag::kNone);
    unsetCursor();
    band_.hide();
    if (ended == Drag::kSelecting) {
        const QRectF rect(QRect(pressedAt_, event->pos()).normalized());
        emit SelectionAsked(
            index_.PairsIn(view_, {rect.left(), rect.top(), rect.right(), rect.bottom()}), isAdded);
    }
    if (ended == Drag::kPressed && event->button() == Qt::LeftButton) {
        const auto pair = PairAt(event->position());
        emit SelectionAsked(pair ? std::vector{*pair} : std::vector<std::size_t>(), isAdded);
    }
}

void PlanWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    if (const auto pair = PairAt(event->position())) emit ToggleAsked(*pair);
}

void PlanWidget::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Plus:
        case Qt::Key_Equal: return Zoom(kZoomStep);
        case Qt::Key_Minus: return Zoom(1 / kZoomStep);
        case Qt::Key_0: return ShowAll();
        case Qt::Key_Left: return Move(kPanStep, 0);
        case Qt::Key_Right: return Move(-kPanStep, 0);
        case Qt::Key_Up: return Move(0, kPanStep);
        case Qt::Key_Down: return Move(0, -kPanStep);
        case Qt::Key_PageDown: return AskForNext(false);
        case Qt::Key_PageUp: return AskForNext(true);
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (selected_.size() == 1) return emit ToggleAsked(selected_.front());
            break;
        case Qt::Key_Escape:
            if (!selected_.empty()) return emit SelectionAsked({}, false);
            break;
        default: break;
    }
    QWidget::keyPressEvent(event);
}

void PlanWidget::AskForNext(bool backwards) {
    const auto from = selected_.empty() ? std::nullopt : std::optional(selected_.front());
    const auto pair = index_.Next(from, backwards);
    if (!pair) return;
    ShowPair(*pair);
    emit SelectionAsked({*pair}, false);
}

void PlanWidget::leaveEvent(QEvent*) { emit PlaceLeft(); }

}  // namespace kv_tr
