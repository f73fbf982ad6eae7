// The window of the adjustment dialog.
#pragma once

#include <array>

#include "kv_tr/forms/frmTr.h"
#include "kv_tr/qt/form_window.h"

class QBoxLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QScrollArea;
class QSplitter;

namespace kv_tr {

class FindingsPanel;
class GraphArea;
class PairGrid;
class WarningStrip;

class frmTrWindow : public FormWindow {
public:
    explicit frmTrWindow(frmTr& form);

protected:
    void Redraw() override;
    void Act(const std::function<void()>& action) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* MakeModes();
    QGroupBox* MakeTypes();
    QGroupBox* MakeDisplay();
    QGroupBox* MakeStatistics();
    QWidget* MakePanel();
    QWidget* MakeExits();
    void MakeViews();
    void MakeStrip();
    QWidget* MakeFindings();
    QWidget* MakePanelButtons();
    void RedrawFindings();
    void TakeOffer(int line);
    void TogglePanel(const std::function<void()>& toggle);
    QLabel* MakeLabel(const QString& name, QBoxLayout& layout);
    void ActOnCells(const std::function<void()>& action);
    bool SettleLimit();
    void TakeWhatIsTyped();
    void FitPanel();
    void Copy();

    frmTr& form_;
    PairGrid* grid_ = nullptr;
    GraphArea* picture_ = nullptr;
    QScrollArea* panel_ = nullptr;
    WarningStrip* strip_ = nullptr;
    FindingsPanel* findings_ = nullptr;
    QPushButton* statisticsButton_ = nullptr;
    QPushButton* typesButton_ = nullptr;
    QPushButton* columnsButton_ = nullptr;
    std::array<QPushButton*, 3> modes_{};
    std::array<QRadioButton*, 10> types_{};
    QCheckBox* inverse_ = nullptr;
    std::array<QCheckBox*, 4> labels_{};
    std::vector<QLabel*> statistics_;
    QLineEdit* limit_ = nullptr;
    QPushButton* print_ = nullptr;
    QPushButton* savePicture_ = nullptr;
    QPushButton* apply_ = nullptr;
    QPushButton* exit_ = nullptr;
};

}  // namespace kv_tr
