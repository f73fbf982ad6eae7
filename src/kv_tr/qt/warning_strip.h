// The strip that says whether a fit can be relied on.
#pragma once

#include <QFrame>
#include <vector>

#include "kv_tr/forms/findings_tables.h"

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace kv_tr {

/// Shows the first of some lines with its offer, in the colour of its severity with an icon and a
/// word; the others are a tool tip, or stand below when they are wanted.
class WarningStrip : public QFrame {
    Q_OBJECT

public:
    /// The buttons belong to the window, which names them and acts; the strip gives them a place.
    WarningStrip(QPushButton* offer, QPushButton* more, QWidget* parent);

    /// Gives another button of the window a place behind the offer.
    void Add(QPushButton* button);
    void Show(std::vector<StripLine> lines, bool all);
    /// A line as it is shown.
    const StripLine& Line(int number) const { return lines_.at(static_cast<std::size_t>(number)); }

signals:
    /// The offer of one of the other lines was chosen.
    void OfferChosen(int line);

private:
    void ShowLook(StripLine::Look look);

    std::vector<StripLine> lines_;
    QHBoxLayout* first_;
    QLabel* icon_;
    QLabel* text_;
    QPushButton* offer_;
    QPushButton* more_;
    QLabel* others_;
};

}  // namespace kv_tr
