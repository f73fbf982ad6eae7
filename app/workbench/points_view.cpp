// The table of points as the user looks at it: which rows and columns, in which order.
#include "workbench/points_view.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string_view>

#include "kv_tr/published/number_format.h"
#include "workbench/folding.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace {

/// A figure of very many points that is computed when the user rests.
constexpr const char* kNotYet = "…";

constexpr auto kUsualColumns = {Column::kUse,
                                Column::kIdentifier,
                                Column::kSourceFirst,
                                Column::kSourceSecond,
                                Column::kDestinationFirst,
                                Column::kDestinationSecond,
                                Column::kResidualFirst,
                                Column::kResidualSecond,
                                Column::kResidual,
                                Column::kStudentisedFirst,
                                Column::kStudentisedSecond,
                                Column::kNote};

/// The words of ColumnsText, by column.
constexpr std::array<std::string_view, kColumnCount> kWords{
    "use", "number", "id", "y1", "x1", "y2", "x2", "sy", "sx",
    "dy",  "dx",     "d",  "ty", "tx", "ry", "rx", "p",  "note"};

std::size_t IndexOf(Column column) { return static_cast<std::size_t>(column); }

int RowInTable(std::size_t place) { return static_cast<int>(place) + 1; }

std::string Trimmed(std::string_view text) {
    const auto begin = std::min(text.find_first_not_of(' '), text.size());
    return std::string(text.substr(begin, text.find_last_not_of(' ') + 1 - begin));
}

/// Whether a folded text can stand in a number as cells show it.
bool MayBeInNumber(std::string_view folded) {
    return folded.find_first_not_of("0123456789.,+-e\xE2\x88\x9E\x80\x93") == folded.npos;
}

bool IsText(Column column) { return column == Column::kIdentifier || column == Column::kNote; }

/// A cell of tab-separated text: what would end the cell is put between quotes.
std::string QuotedCell(const std::string& text) {
    if (text.find_first_of("\t\r\n\"") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + "\"";
}

}  // namespace

PointsView::PointsView(Document& document) : document_(document) {
    for (const Column column : kUsualColumns) shown_[IndexOf(column)] = true;
}

const std::vector<std::size_t>& PointsView::Rows() {
    if (!isArranged_ || arranged_ != document_.Version()) Arrange();
    return rows_;
}

void PointsView::Arrange() {
    isArranged_ = true;
    arranged_ = document_.Version();
    rows_.clear();
    const std::string folded = Folded(filter_);
    for (std::size_t place = 0; place < document_.Count(); ++place) {
        if (IsWanted(place, folded)) rows_.push_back(place);
    }
    SortRows();
}

bool PointsView::IsWanted(std::size_t place, const std::string& folded) {
    if (onlySuspects_ && !document_.IsSuspect(place)) return false;
    if (folded.empty()) return true;
    const bool mayBeNumber = MayBeInNumber(folded);
    for (std::size_t i = 0; i < kColumnCount; ++i) {
        const auto column = static_cast<Column>(i);
        if (column == Column::kUse || !(shown_[i] || column == Column::kIdentifier)) continue;
        if (!IsText(column) && !mayBeNumber) continue;
        if (Folded(TextAt(place, column)).find(folded) != std::string::npos) return true;
    }
    return false;
}

void PointsView::SortRows() {
    const auto& [column, descending] = order_;
    if (column == Column::kNumber) {
        if (descending) std::ranges::reverse(rows_);
        return;
    }
    // Texts and numbers are made once a row, not once a comparison.
    struct Key {
        int group;  // cells without a figure come last in either direction, excluded points then
        double number;
        std::string text;
        std::size_t place;
    };
    std::vector<Key> keys;
    keys.reserve(rows_.size());
    for (const std::size_t place : rows_) {
        Key key{0, 0.0, {}, place};
        if (IsText(column)) {
            key.text = Folded(TextAt(place, column));
            key.group = key.text.empty() ? 1 : 0;
        } else {
            key.number = NumberAt(place, column);
            key.group = std::isnan(key.number) ? 1 : 0;
            if (IsComputed(column) && !document_.PointAt(place).used) key.group += 2;
        }
        keys.push_back(std::move(key));
    }
    const bool isText = IsText(column);
    const auto isBefore = [isText](const Key& a, const Key& b) {
        if (isText) return IsBefore(a.text, b.text);
        return a.number < b.number;
    };
    std::ranges::stable_sort(keys, [&, down = descending](const Key& a, const Key& b) {
        if (a.group != b.group) return a.group < b.group;
        if (a.group % 2 == 1) return false;  // none has a figure
        return down ? isBefore(b, a) : isBefore(a, b);
    });
    std::ranges::transform(keys, rows_.begin(), &Key::place);
}

std::size_t PointsView::RowOf(std::size_t place) {
    const auto& rows = Rows();
    return static_cast<std::size_t>(std::ranges::find(rows, place) - rows.begin());
}

void PointsView::Sort(Order order) {
    order_ = order;
    isArranged_ = false;
}

void PointsView::Filter(const std::string& text) {
    filter_ = text;
    isArranged_ = false;
}

void PointsView::OnlySuspects(bool only) {
    onlySuspects_ = only;
    isArranged_ = false;
}

void PointsView::Show(Column column, bool shown) {
    shown_[IndexOf(column)] = shown;
    isArranged_ = false;  // the filter looks at the cells that are shown
}

std::vector<Column> PointsView::ShownColumns() const {
    std::vector<Column> columns;
    for (std::size_t i = 0; i < kColumnCount; ++i) {
        if (shown_[i]) columns.push_back(static_cast<Column>(i));
    }
    return columns;
}

std::string PointsView::Heading(Column column) const {
    switch (column) {
        case Column::kUse: return Said(Phrase::kUseColumn);
        case Column::kSigmaFirst: return "σY";
        case Column::kSigmaSecond: return "σX";
        case Column::kNote: return Said(Phrase::kNoteColumn);
        default: return Trimmed(document_.HeadingOf(TableColumnOf(column)));
    }
}

std::string PointsView::HeadingTip(Column column) const {
    switch (column) {
        case Column::kUse: return Said(Phrase::kUseColumnTip);
        case Column::kSourceFirst: return Said(Phrase::kSourceFirstTip);
        case Column::kSourceSecond: return Said(Phrase::kSourceSecondTip);
        case Column::kDestinationFirst: return Said(Phrase::kDestinationFirstTip);
        case Column::kDestinationSecond: return Said(Phrase::kDestinationSecondTip);
        case Column::kSigmaFirst:
        case Column::kSigmaSecond: return Said(Phrase::kSigmaColumnTip);
        case Column::kResidualFirst: return Said(Phrase::kResidualFirstTip);
        case Column::kResidualSecond: return Said(Phrase::kResidualSecondTip);
        case Column::kResidual: return Said(Phrase::kResidualTip);
        case Column::kNote: return Said(Phrase::kNoteColumnTip);
        case Column::kNumber:
        case Column::kIdentifier: return {};
        default: return document_.HeadingTipOf(TableColumnOf(column));
    }
}

std::string PointsView::ColumnsText() const {
    std::string text;
    for (const Column column : ShownColumns())
        text += (text.empty() ? "" : " ") + std::string(kWords[IndexOf(column)]);
    return text;
}

void PointsView::TakeColumnsText(const std::string& text) {
    std::array<bool, kColumnCount> shown{};
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::string_view word = rest.substr(0, rest.find(' '));
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
        const auto found = std::ranges::find(kWords, word);
        if (found == kWords.end()) return;
        shown[static_cast<std::size_t>(found - kWords.begin())] = true;
    }
    if (std::ranges::find(shown, true) == shown.end()) return;
    shown_ = shown;
    isArranged_ = false;
}

/// What a cell says in full; the place is that of a point in the document.
std::string PointsView::TextAt(std::size_t place, Column column) {
    switch (column) {
        case Column::kUse:
            return Said(document_.PointAt(place).used ? Phrase::kUsed : Phrase::kExcluded);
        case Column::kIdentifier: return document_.PointAt(place).id;
        case Column::kNote: return document_.NoteAt(place);
        case Column::kSigmaFirst:
        case Column::kSigmaSecond: {
            const double sigma = NumberAt(place, column);
            return std::isnan(sigma) ? "" : ShortestText(sigma, ComponentNumberStyle());
        }
        default: break;
    }
    if (IsComputed(column) && !document_.HasFit()) return kNoFigure;
    if (IsAssessed(column) && !document_.HasAssessment()) return kNotYet;
    return document_.Table().CellText(RowInTable(place), TableColumnOf(column));
}

double PointsView::NumberAt(std::size_t place, Column column) {
    const Point sigma = document_.SigmaAt(place);
    const auto known = [](double value) { return value > 0 ? value : kUndefined; };
    switch (column) {
        case Column::kUse: return document_.PointAt(place).used ? 0.0 : 1.0;
        case Column::kSigmaFirst: return known(sigma.first);
        case Column::kSigmaSecond: return known(sigma.second);
        default: break;
    }
    if (IsComputed(column) && !document_.HasFit()) return kUndefined;
    return document_.Table().NumberIn(RowInTable(place), TableColumnOf(column));
}

std::string PointsView::CellText(std::size_t row, Column column) {
    return TextAt(PlaceOf(row), column);
}

std::string PointsView::WidestText(Column column) {
    if (IsAssessed(column) && !document_.HasAssessment()) return "-00.00";
    const int inTable = TableColumnOf(column);
    if (inTable >= 0) return document_.Table().WidestText(inTable);
    std::string widest;
    for (std::size_t place = 0; place < document_.Count(); ++place) {
        std::string text = TextAt(place, column);
        if (text.size() > widest.size()) widest = std::move(text);
        if (column == Column::kUse && place > 0) break;  // one of two words
    }
    return widest;
}

PointsView::Mark PointsView::MarkOf(std::size_t row) { return MarkAt(document_, PlaceOf(row)); }

std::string PointsView::EditText(std::size_t row, Column column) {
    const int inTable = TableColumnOf(column);
    const bool isNumber = IsEditable(column) && inTable >= 0 && column != Column::kIdentifier;
    if (!isNumber) return CellText(row, column);
    return document_.Table().CopiedCell(RowInTable(PlaceOf(row)), inTable);
}

void PointsView::Select(const std::vector<std::size_t>& rows) {
    selected_.clear();
    for (const std::size_t row : rows) selected_.insert(document_.KeyAt(PlaceOf(row)));
}

void PointsView::ToggleSelected(std::size_t row) {
    const std::uint64_t key = document_.KeyAt(PlaceOf(row));
    if (selected_.erase(key) == 0) selected_.insert(key);
}

bool PointsView::IsSelected(std::size_t row) {
    return selected_.contains(document_.KeyAt(PlaceOf(row)));
}

void PointsView::SelectAll() {
    std::vector<std::size_t> all(RowCount());
    std::iota(all.begin(), all.end(), std::size_t{0});
    Select(all);
}

std::vector<std::size_t> PointsView::SelectedRows() {
    std::vector<std::size_t> rows;
    if (selected_.empty()) return rows;
    for (std::size_t row = 0; row < RowCount(); ++row) {
        if (IsSelected(row)) rows.push_back(row);
    }
    return rows;
}

Places PointsView::SelectedPlaces() {
    Places places;
    for (const std::size_t row : SelectedRows()) places.push_back(PlaceOf(row));
    std::ranges::sort(places);
    return places;
}

std::string PointsView::CopyText(const std::vector<std::size_t>& rows) {
    const auto columns = ShownColumns();
    std::string text;
    for (const Column column : columns)
        text += (column == columns.front() ? "" : "\t") + QuotedCell(Heading(column));
    text += '\n';
    for (const std::size_t row : rows) {
        const std::size_t place = PlaceOf(row);
        for (const Column column : columns) {
            text += column == columns.front() ? "" : "\t";
            const int inTable = TableColumnOf(column);
            if (column == Column::kUse) {
                text += document_.PointAt(place).used ? '1' : '0';
            } else if (inTable < 0 || (IsComputed(column) && !document_.HasFit())) {
                text += QuotedCell(TextAt(place, column));
            } else if (column == Column::kIdentifier) {
                text += QuotedCell(document_.PointAt(place).id);
            } else {
                text += document_.Table().CopiedCell(RowInTable(place), inTable);
            }
        }
        text += '\n';
    }
    return text;
}

PointsView::Mark MarkAt(Document& document, std::size_t place) {
    using enum PointsView::Mark;
    if (!document.PointAt(place).used) return kExcluded;
    if (!document.HasFit()) return kGood;
    if (place == document.KnownSuspect()) return kSuspect;
    const double residual = document.Adjusted().Residuals()[place].Length();
    return residual <= document.Limit() ? kGood : kBeyondLimit;
}

}  // namespace kv_tr::workbench
