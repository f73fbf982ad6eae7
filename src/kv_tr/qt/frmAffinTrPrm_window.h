// The window of the editor of six parameters.
#pragma once

#include <array>

#include "kv_tr/forms/frmAffinTrPrm.h"
#include "kv_tr/qt/form_window.h"

class QGroupBox;
class QLabel;
class QLayout;
class QLineEdit;

namespace kv_tr {

class frmAffinTrPrmWindow : public FormWindow {
public:
    explicit frmAffinTrPrmWindow(frmAffinTrPrm& form);

protected:
    void Redraw() override;
    void Act(const std::function<void()>& action) override;
    void reject() override;

private:
    QGroupBox* MakeBoxes();
    QGroupBox* MakeSample();
    QLayout* MakeButtons();
    bool Settle(int box);

    frmAffinTrPrm& form_;
    std::array<QLineEdit*, frmAffinTrPrm::kBoxes> boxes_{};
    std::array<QLabel*, 2> samples_{};
    std::array<QPushButton*, 2> fathomButtons_{};
};

}  // namespace kv_tr
