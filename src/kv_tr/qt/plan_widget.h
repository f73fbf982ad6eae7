// The plan of control points as a widget: zoom, pan, picking.
#pragma once

#include <QRubberBand>
#include <QWidget>
#include <optional>
#include <vector>

#include "kv_tr/forms/plan_drawing.h"
#include "kv_tr/qt/plan_background.h"

class QHelpEvent;

namespace kv_tr {

/// Shows a plan and lets the user move about in it. What the user asks for beyond that is told by
/// signals and changes nothing here: the owner answers with SetSelection or SetData. Pairs are
/// subscripts of the data.
///
/// Wheel, + and - zoom, 0 shows everything; dragging and the arrow keys move; dragging with Shift
/// or the right button selects; a click or Page Up and Page Down select one pair; a double click,
/// Enter or Space ask to exclude or include it.
class PlanWidget : public QWidget {
    Q_OBJECT

public:
    explicit PlanWidget(QWidget* parent = nullptr);

    /// Keeps the view unless that shows everything. Selected pairs that are gone are forgotten.
    void SetData(PlanData data);
    void SetWords(PlanWords words);
    void SetOptions(const PlanOptions& options);
    void SetSelection(std::vector<std::size_t> pairs);

    const PlanIndex& Index() const { return index_; }
    const PlanWords& Words() const { return words_; }
    const PlanOptions& Options() const { return options_; }
    const PlanView& View() const { return view_; }
    const std::vector<std::size_t>& Selection() const { return selected_; }

    /// The picture below the plan; none takes it away.
    void SetBackground(std::optional<PlanBackground> background);
    /// Draws residual vectors by one round step longer or shorter.
    void ScaleVectors(bool longer);

    void ShowAll();
    /// About the middle of the plan.
    void Zoom(double factor);
    /// Moves the plan by so many units to the right and downwards.
    void Move(double right, double down) { SetView(view_.Moved(right, down)); }
    /// Moves the plan, if it must be moved, until a pair is in view.
    void ShowPair(std::size_t pair);

    QSize sizeHint() const override { return {480, 420}; }
    QSize minimumSizeHint() const override { return {160, 160}; }

signals:
    /// Pairs to be selected, instead of or, with the Control key, beside those that are. None of
    /// them: the user clicked where no pair is.
    void SelectionAsked(const std::vector<std::size_t>& pairs, bool isAdded);
    /// A pair to be excluded or included.
    void ToggleAsked(std::size_t pair);
    /// The mouse is over a place, in metres of the plan; or over none any more.
    void PlaceHovered(Point place);
    void PlaceLeft();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    enum class Drag { kNone, kPressed, kMoving, kSelecting };

    void Redraw();
    /// Gives the frame its size after a change of the widget, the legend or the data.
    void FitFrame();
    void SetView(const PlanView& view);
    void ZoomAbout(double factor, Point about);
    std::optional<std::size_t> PairAt(QPointF place) const;
    void ShowTip(const QHelpEvent& event);
    void AskForNext(bool backwards);

    PlanIndex index_;
    PlanWords words_;
    PlanOptions options_;
    std::optional<PlanBackground> background_;
    std::vector<std::size_t> selected_;
    PlanView view_;
    bool showsAll_ = true;
    std::optional<PlanPicture> picture_;  // of the present state, once that was painted
    Drag drag_ = Drag::kNone;
    QPoint pressedAt_;
    QPoint draggedTo_;
    QRubberBand band_;
};

}  // namespace kv_tr
