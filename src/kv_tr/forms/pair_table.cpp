// The table of control points with their residuals: cells, colours, the current cell, editing.
#include "kv_tr/forms/pair_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "kv_tr/forms/findings_tables.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr {
namespace {

constexpr int kAtTheEnd = 1000;  // of any text

enum Column {
    kNumber,
    kIdentifier,
    kFirstCoordinate,
    kLastCoordinate = 5,
    kTotal = 8,
    kStudentisedFirst,
    kStudentisedSecond,
    kRedundancyFirst,
    kRedundancySecond,
    kProbability,
};

/// The place of a column's group in PairTable::kFigureGroups.
std::size_t GroupOf(int column) {
    return static_cast<std::size_t>((column - kStudentisedFirst) / 2);
}

std::string Heading(int column) {
    constexpr std::array kFixed{"    Y1",   "    X1", "    Y2", "    X2", "    Dy", "    Dx",
                                "    DyDx", "tY",     "tX",     "rY",     "rX",     "p"};
    if (column == kNumber) return Translated(Text::kNumberColumn);
    if (column == kIdentifier) return Translated(Text::kIdentifierColumn);
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

/// A figure of the statistics as its column shows it.
std::string FigureCell(double value, int column) {
    return column == kProbability ? ShortFigure(value) : FixedFigure(value, 2);
}

/// Puts a text into a point; false for a column that cannot be changed and for a text that is no
/// number where one is needed.
bool Put(const std::string& text, int column, ControlPoint& point) {
    if (column == kIdentifier) {
        point.id = text;
        return true;
    }
    if (column < kFirstCoordinate || column > kLastCoordinate) return false;
    const auto number = TypedNumber(text);
    if (!number) return false;
    const std::array coordinates{&point.source.first, &point.source.second,
                                 &point.destination.first, &point.destination.second};
    *coordinates[static_cast<std::size_t>(column - kFirstCoordinate)] = *number;
    return true;
}

}  // namespace

std::string PairTable::CellText(int row, int column) const {
    if (row == 0) return Heading(column);
    if (column == kNumber) return std::to_string(row);
    if (column > kTotal) return FigureCell(FigureIn(row, column), column);
    return column == kIdentifier ? PointIn(row).id : FormatFixed(NumberIn(row, column), 3, 0);
}

std::optional<PairTable::CellColours> PairTable::ColoursOf(int row, int column) const {
    if (row == 0 || (column != kIdentifier && column != kTotal)) return std::nullopt;
    CellColours colours{.text = ResidualIn(row).Length() <= limit_ ? kBlue : kRed};
    if (!PointIn(row).used) colours.background = kYellow;
    return colours;
}

std::string PairTable::WidestText(int column) const {
    const auto points = adjustment_.Points();
    if (points.empty()) return {};
    if (column == kNumber) return std::to_string(points.size());
    if (column == kIdentifier) {
        const auto length = [](const ControlPoint& point) { return point.id.size(); };
        return std::ranges::max_element(points, {}, length)->id;
    }
    if (column == kProbability) return ShortFigure(1e-100);
    if (column > kTotal) return FixedFigure(-100.0, 2);
    double least = NumberIn(1, column);
    double greatest = least;
    for (int row = 2; row < RowCount(); ++row) {
        const double number = NumberIn(row, column);
        least = std::min(least, number);
        greatest = std::max(greatest, number);
    }
    const std::string negative = FormatFixed(least, 3, 0);
    const std::string positive = FormatFixed(greatest, 3, 0);
    return negative.size() > positive.size() ? negative : positive;
}

std::string PairTable::CopiedCell(int row, int column) const {
    const bool isNumber = row > 0 && column >= kFirstCoordinate &&
                          (column <= kTotal || std::isfinite(FigureIn(row, column)));
    return isNumber ? AllDigits(NumberIn(row, column)) : Trimmed(CellText(row, column));
}

std::string PairTable::TableText(std::span<const int> rows) const {
    std::string text;
    const auto addRow = [&](int row) {
        for (int column = 0; column < kAllColumns; ++column) {
            if (!IsColumnShown(column)) continue;
            text += (column == 0 ? "" : "\t") + CopiedCell(row, column);
        }
        text += '\n';
    };
    addRow(0);
    for (const int row : rows) addRow(row);
    return text;
}

bool PairTable::IsColumnShown(int column) const {
    return column <= kTotal || (findings_ != nullptr && groupsShown_[GroupOf(column)]);
}

bool PairTable::IsAnyGroupShown() const { return std::ranges::count(groupsShown_, true) > 0; }

void PairTable::ToggleGroup(std::size_t group) {
    groupsShown_[group] = !groupsShown_[group];
    changed_.Raise();
}

void PairTable::ToggleAllGroups() {
    groupsShown_.fill(!IsAnyGroupShown());
    changed_.Raise();
}

std::string PairTable::HeadingTip(int column) const {
    return column <= kTotal ? std::string() : Translated(kFigureGroups[GroupOf(column)]);
}

int PairTable::CurrentRow() const { return std::min(currentRow_, RowCount() - 1); }

void PairTable::Grid1EnterCell(int row, int column) {
    if (row == CurrentRow() && column == currentColumn_) return;
    currentRow_ = row;
    currentColumn_ = column;
    editor_.visible = false;
    changed_.Raise();
}

void PairTable::Editable(bool editable) {
    editable_ = editable;
    CloseEditor();
}

void PairTable::CloseEditor() {
    if (std::exchange(editor_.visible, false)) changed_.Raise();
}

void PairTable::OpenEditor(const std::string& text, int caret) {
    if (!editable_) return;
    editor_ = {.visible = true, .text = text, .caret = caret};
    changed_.Raise();
}

void PairTable::Grid1Click(int row, int column) {
    const ChangeEvent::Action action(changed_);
    Grid1EnterCell(row, column);
    if (row > 0 && column <= kLastCoordinate) OpenEditor(CellText(row, column), kAtTheEnd);
}

void PairTable::Grid1KeyPress(const std::string& character) {
    if (CurrentRow() == 0) return;
    const bool printable = !character.empty() && static_cast<unsigned char>(character[0]) > 32;
    if (printable) {
        OpenEditor(character, 1);
    } else {
        OpenEditor(CellText(CurrentRow(), currentColumn_), kAtTheEnd);
    }
}

void PairTable::Grid1GotFocus() {
    if (editor_.visible) SetCell(CurrentRow(), currentColumn_, editor_.text);
}

void PairTable::txtEditKeyDown(EditKey key) {
    if (!editor_.visible) return;
    if (key == EditKey::kEscape) return CloseEditor();
    const ChangeEvent::Action action(changed_);
    Grid1GotFocus();
    if (key == EditKey::kNext || key == EditKey::kPrevious)
        return EditNeighbour(key == EditKey::kNext ? 1 : -1);
    const int step = key == EditKey::kUp ? -1 : key == EditKey::kDown ? 1 : 0;
    Grid1EnterCell(std::clamp(CurrentRow() + step, 1, RowCount() - 1), currentColumn_);
}

/// Opens the editor on the next cell that can be changed, in the next row behind the last one.
void PairTable::EditNeighbour(int step) {
    const int place = (CurrentRow() - 1) * kLastCoordinate + currentColumn_ - 1 + step;
    if (place < 0 || place >= (RowCount() - 1) * kLastCoordinate) return;
    Grid1Click(place / kLastCoordinate + 1, place % kLastCoordinate + 1);
}

bool PairTable::SetCell(int row, int column, const std::string& text) {
    const ChangeEvent::Action action(changed_);
    CloseEditor();
    const auto point = PointWith(row, column, text);
    if (!point) return false;
    adjustment_.Replace(static_cast<std::size_t>(row - 1), *point);
    changed_.Raise();
    Edited.Raise();
    return true;
}

std::optional<ControlPoint> PairTable::PointWith(int row, int column,
                                                 const std::string& text) const {
    ControlPoint point = PointIn(row);
    if (text == CellText(row, column) || !Put(text, column, point)) return std::nullopt;
    return point;
}

const ControlPoint& PairTable::PointIn(int row) const {
    return adjustment_.Points()[static_cast<std::size_t>(row - 1)];
}

const Residual& PairTable::ResidualIn(int row) const {
    return adjustment_.Residuals()[static_cast<std::size_t>(row - 1)];
}

double PairTable::NumberIn(int row, int column) const {
    if (column > kTotal) return FigureIn(row, column);
    const Residual& residual = ResidualIn(row);
    if (column == kTotal) return residual.Length();  // which takes longer than all the others
    const auto& [id, source, destination, used] = PointIn(row);
    const std::array numbers{source.first,       source.second,  destination.first,
                             destination.second, residual.first, residual.second};
    return numbers[static_cast<std::size_t>(column - kFirstCoordinate)];
}

/// The figure in a column of the statistics; not a number where it is not defined.
double PairTable::FigureIn(int row, int column) const {
    const PointAssessment* point =
        findings_ == nullptr ? nullptr : findings_->Of(static_cast<std::size_t>(row - 1));
    if (point == nullptr) return kUndefined;
    switch (column) {
        case kStudentisedFirst: return point->external.first;
        case kStudentisedSecond: return point->external.second;
        case kRedundancyFirst: return point->redundancy.first;
        case kRedundancySecond: return point->redundancy.second;
        default: return point->adjustedProbability;
    }
}

}  // namespace kv_tr
