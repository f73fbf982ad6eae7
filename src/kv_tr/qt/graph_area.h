// Painting the residual graph, on the screen and on pages.
#pragma once

#include <QWidget>

#include "kv_tr/forms/colour.h"
#include "kv_tr/forms/residual_plan.h"

class QPainter;

namespace kv_tr {

/// A form's colour as it can be read on a background: on a dark one it is lightened.
QColor ReadableOn(const QColor& background, Colour colour);

/// Paints the page; one unit of it is one of the painter's.
void PaintPage(QPainter& painter, const GraphPage& page);

/// PicBox: shows the marks of a plan, which has the size of this widget.
class GraphArea : public QWidget {
    Q_OBJECT

public:
    GraphArea(ResidualPlan& plan, QWidget* parent);

signals:
    /// The plan knows whether that was the end of a double click.
    void MouseReleased(QPointF place);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    ResidualPlan& plan_;
};

}  // namespace kv_tr
