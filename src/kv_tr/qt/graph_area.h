// Painting the residual graph, on the screen and on pages.
#pragma once

#include <QWidget>

#include "kv_tr/forms/colour.h"
#include "kv_tr/forms/frmTr.h"
#include "kv_tr/qt/form_window.h"

class QPainter;

namespace kv_tr {

/// A form's colour as it can be read on a background: on a dark one it is lightened.
QColor ReadableOn(const QColor& background, Colour colour);

/// Paints the page; one unit of it is one of the painter's.
void PaintPage(QPainter& painter, const GraphPage& page);

/// PicBox: shows the form's marks; a double click toggles the nearest pair.
class GraphArea : public QWidget {
public:
    GraphArea(frmTr& form, ActFunction act, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    frmTr& form_;
    ActFunction act_;
};

}  // namespace kv_tr
