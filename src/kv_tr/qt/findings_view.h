// A table of figures to read.
#pragma once

#include <QTableWidget>

#include "kv_tr/forms/findings_tables.h"

namespace kv_tr {

/// Shows a table of texts, marked rows bold; a double click or Enter chooses a row.
class FindingsView : public QTableWidget {
    Q_OBJECT

public:
    FindingsView(const QString& name, QWidget* parent);

    void Show(const FindingsTable& table);
    /// Puts the whole table on the clipboard, cells separated by tabs.
    void Copy() const;

    QSize sizeHint() const override;

signals:
    void RowChosen(int row);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace kv_tr
