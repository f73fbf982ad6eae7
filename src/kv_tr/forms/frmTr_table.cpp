// The table of the adjustment dialog: cells, colours, exclusion and editing.
#include <algorithm>
#include <array>
#include <charconv>

#include "kv_tr/forms/frmTr.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/pairs.h"

namespace kv_tr {
namespace {

enum Column { kNumber, kIdentifier, kFirstCoordinate, kLastCoordinate = 5, kTotal = 8 };

std::string Heading(int column) {
    constexpr std::array kFixed{"    Y1", "    X1", "    Y2",  "    X2",
                                "    Dy", "    Dx", "    DyDx"};
    if (column == kNumber) return GetMlString(98, "Ssz.");
    if (column == kIdentifier) return GetMlString(99, "  Psz.");
    return kFixed[static_cast<std::size_t>(column - kFirstCoordinate)];
}

/// The shortest text that reads back to the same number.
std::string AllDigits(double value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    std::replace(text.data(), end, '.', DecimalSeparator());
    return {text.data(), end};
}

std::string Trimmed(const std::string& text) {
    const auto begin = text.find_first_not_of(' ');
    if (begin == text.npos) return {};
    return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

}  // namespace

std::string frmTr::CellText(int row, int column) const {
    if (row == 0) return Heading(column);
    if (column == kNumber) return std::to_string(row);
    return column == kIdentifier ? PointIn(row).id : FormatFixed(NumberIn(row, column), 3, 0);
}

std::optional<frmTr::CellColours> frmTr::ColoursOf(int row, int column) const {
    if (row == 0 || (column != kIdentifier && column != kTotal)) return std::nullopt;
    CellColours colours{.text = ResidualIn(row).Length() <= engine_->gdErrLimit ? kBlue : kRed};
    if (!PointIn(row).used) colours.background = kYellow;
    return colours;
}

std::string frmTr::WidestText(int column) const {
    const auto points = engine_->Held().Points();
    if (points.empty()) return {};
    if (column == kNumber) return std::to_string(points.size());
    if (column == kIdentifier) {
        const auto length = [](const ControlPoint& point) { return point.id.size(); };
        return std::ranges::max_element(points, {}, length)->id;
    }
    double least = NumberIn(1, column);
    double greatest = least;
    for (int row = 2; row < RowCount(); ++row) {
        least = std::min(least, NumberIn(row, column));
        greatest = std::max(greatest, NumberIn(row, column));
    }
    const std::string negative = FormatFixed(least, 3, 0);
    const std::string positive = FormatFixed(greatest, 3, 0);
    return negative.size() > positive.size() ? negative : positive;
}

std::string frmTr::TableText(std::span<const int> rows) const {
    std::string text;
    const auto addRow = [&](int row) {
        for (int column = 0; column < kColumns; ++column) {
            const bool isNumber = row > 0 && column >= kFirstCoordinate;
            text += column == 0 ? "" : "\t";
            text += isNumber ? AllDigits(NumberIn(row, column)) : Trimmed(CellText(row, column));
        }
        text += '\n';
    };
    addRow(0);
    for (const int row : rows) addRow(row);
    return text;
}

void frmTr::Grid1EnterCell(int row, int column) {
    if (row == currentRow_ && column == currentColumn_) return;
    currentRow_ = row;
    currentColumn_ = column;
    editor_.visible = false;
    Changed.Raise();
}

void frmTr::Grid1Click(int row, int column) {
    Grid1EnterCell(row, column);
    if (row > 0 && column <= kLastCoordinate) OpenEditor(CellText(row, column), 1000);
}

void frmTr::Grid1DblClick(int row, int column) {
    if (mode_ != Mode::kTable || row == 0) return;
    Fit([&] { engine_->ExcludeByIx(row - 1, true); });
    currentRow_ = 0;
    currentColumn_ = column;
    ShowResult();
}

void frmTr::Grid1MouseUp(int anchorRow, int row) {
    if (mode_ != Mode::kTable) return;
    const auto [first, last] = std::minmax(anchorRow, row);
    for (int number = std::max(first, 1); number <= last; ++number) {
        engine_->ExcludeByIx(number - 1, false);
    }
    Recalculate();
    SelectTypeOf(engine_->eTrType());
}

void frmTr::Grid1KeyPress(const std::string& character) {
    if (currentRow_ == 0 || currentRow_ >= RowCount()) return;
    const bool printable = !character.empty() && static_cast<unsigned char>(character[0]) > 32;
    if (printable) {
        OpenEditor(character, 1);
    } else {
        OpenEditor(CellText(currentRow_, currentColumn_), 1000);
    }
}

void frmTr::Grid1GotFocus() {
    if (mode_ == Mode::kEdit && editor_.visible) CommitEdit();
}

void frmTr::txtEditKeyDown(EditKey key) {
    if (!editor_.visible) return;
    if (key == EditKey::kEscape) {
        editor_.visible = false;
        Changed.Raise();
        return;
    }
    CommitEdit();
    const int step = key == EditKey::kUp ? -1 : key == EditKey::kDown ? 1 : 0;
    Grid1EnterCell(std::clamp(currentRow_ + step, 1, RowCount() - 1), currentColumn_);
}

void frmTr::OpenEditor(const std::string& text, int caret) {
    if (mode_ != Mode::kEdit) return;
    editor_ = {.visible = true, .text = text, .caret = caret};
    Changed.Raise();
}

void frmTr::CommitEdit() {
    editor_.visible = false;
    if (editor_.text == CellText(currentRow_, currentColumn_)) return Changed.Raise();
    ControlPoint point = PointIn(currentRow_);
    if (!Accept(point, currentColumn_)) return Changed.Raise();
    engine_->Held().Replace(static_cast<std::size_t>(currentRow_ - 1), point);
    Recalculate();
}

/// Puts the editor's text into the point; false for a cell that cannot be changed and for text that
/// is no number where one is needed.
bool frmTr::Accept(ControlPoint& point, int column) const {
    if (column == kIdentifier) {
        point.id = editor_.text;
        return true;
    }
    if (column < kFirstCoordinate || column > kLastCoordinate) return false;
    const auto number = TypedNumber(editor_.text);
    if (!number) return false;
    const std::array coordinates{&point.source.first, &point.source.second,
                                 &point.destination.first, &point.destination.second};
    *coordinates[static_cast<std::size_t>(column - kFirstCoordinate)] = *number;
    return true;
}

const ControlPoint& frmTr::PointIn(int row) const {
    return engine_->Held().Points()[static_cast<std::size_t>(row - 1)];
}

const Residual& frmTr::ResidualIn(int row) const {
    return engine_->Held().Residuals()[static_cast<std::size_t>(row - 1)];
}

/// The number in a column from kFirstCoordinate on.
double frmTr::NumberIn(int row, int column) const {
    const auto& [id, source, destination, used] = PointIn(row);
    const Residual& residual = ResidualIn(row);
    const std::array numbers{source.first,   source.second,   destination.first, destination.second,
                             residual.first, residual.second, residual.Length()};
    return numbers[static_cast<std::size_t>(column - kFirstCoordinate)];
}

}  // namespace kv_tr
