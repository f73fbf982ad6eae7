// A report as a PDF document.
#include "kv_tr/pdf/report_pdf.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "kv_tr/pdf/pdf_canvas.h"
#include "kv_tr/text/texts.h"

namespace kv_tr {
namespace {

using Colour = PdfCanvas::Colour;
using Face = PdfCanvas::Face;
using Kind = ReportTable::Kind;

constexpr double kMargin = PdfCanvas::kMargin;
constexpr double kTextWidth = PdfCanvas::kTextWidth;
constexpr double kTitleSize = 15;
constexpr double kHeadingSize = 11;
constexpr double kTextSize = 9;
constexpr double kSmallSize = 7.5;
constexpr double kLeading = 1.35;

/// In the order of ReportPicture::Ink.
constexpr std::array<Colour, 5> kInks{Colour{0.45F, 0.45F, 0.45F}, Colour{0, 0, 0},
                                      Colour{0.45F, 0.45F, 0.45F}, Colour{0.05F, 0.25F, 0.7F},
                                      Colour{0.8F, 0, 0}};

/// A table in widths and lines that fit on the page.
class TableLayout {
public:
    TableLayout(PdfCanvas& canvas, const ReportTable& table) : canvas_(canvas), table_(table) {
        Measure();
        const double padding = 2.0 * kPadding * static_cast<double>(widths_.size());
        const double natural = Total() - padding;
        size_ = std::clamp(kMostSize * (kTextWidth - padding) / natural, kLeastSize, kMostSize);
        for (double& width : widths_) {
            width = (width - 2.0 * kPadding) * size_ / kMostSize + 2.0 * kPadding;
        }
        Squeeze();
        for (const auto& column : table.columns) hasHead_ |= !column.heading.empty();
    }

    void Draw() {
        // A head never stands alone at the end of a page.
        canvas_.Need(3.0 * RowHeight(1));
        DrawHead();
        for (const auto& row : table_.rows) {
            const auto cells = Cells(row, Face::kRegular);
            if (canvas_.Need(HeightOf(cells))) DrawHead();
            DrawRow(cells, Face::kRegular, 0.3, Colour{0.75F, 0.75F, 0.75F});
        }
        canvas_.Move(6);
    }

private:
    static constexpr double kMostSize = 8;
    static constexpr double kLeastSize = 6;
    static constexpr double kPadding = 3;      // left and right in a cell
    static constexpr double kLeastWidth = 34;  // of a column that is squeezed
    static constexpr std::size_t kMostLines = 12;
    using CellLines = std::vector<std::vector<std::string>>;

    void Measure() {
        widths_.clear();
        for (std::size_t i = 0; i < table_.columns.size(); ++i) {
            double width = canvas_.WidthOf(table_.columns[i].heading, size_, Face::kBold);
            for (const auto& row : table_.rows) {
                width = std::max(width, canvas_.WidthOf(row[i], size_));
            }
            widths_.push_back(width + 2.0 * kPadding + 0.01);
        }
    }

    double Total() const { return std::accumulate(widths_.begin(), widths_.end(), 0.0); }

    /// Takes from the widest column what is too much, from numbers last.
    void Squeeze() {
        for (const bool numbers : {false, true}) {
            while (Total() > kTextWidth) {
                double second = kLeastWidth;
                double* widest = nullptr;
                for (std::size_t i = 0; i < widths_.size(); ++i) {
                    if (!numbers && table_.columns[i].kind == Kind::kNumber) continue;
                    if (widest == nullptr || widths_[i] > *widest) {
                        if (widest != nullptr) second = std::max(second, *widest);
                        widest = &widths_[i];
                    } else {
                        second = std::max(second, widths_[i]);
                    }
                }
                if (widest == nullptr || *widest <= kLeastWidth) break;
                const double least = std::min(second, *widest - 1.0);
                *widest = std::max(least, *widest - (Total() - kTextWidth) - 0.01);
            }
        }
    }

    double RowHeight(std::size_t lines) const {
        return static_cast<double>(lines) * size_ * 1.2 + 4.0;
    }

    double HeightOf(const CellLines& cells) const {
        std::size_t most = 1;
        for (const auto& lines : cells) most = std::max(most, lines.size());
        return RowHeight(most);
    }

    CellLines Cells(const std::vector<std::string>& texts, Face face) {
        CellLines cells;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            cells.push_back(canvas_.Wrapped(texts[i], widths_[i] - 2.0 * kPadding, size_, face));
            if (cells.back().size() <= kMostLines) continue;
            cells.back().resize(kMostLines);
            cells.back().back() = "…";
        }
        return cells;
    }

    void DrawHead() {
        if (!hasHead_) return;
        std::vector<std::string> headings;
        for (const auto& column : table_.columns) headings.push_back(column.heading);
        DrawRow(Cells(headings, Face::kBold), Face::kBold, 0.7, PdfCanvas::kBlack);
    }

    void DrawRow(const CellLines& cells, Face face, double rule, Colour ruleColour) {
        const double height = HeightOf(cells);
        double left = kMargin;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            double base = canvas_.Y() + size_ + 1.5;
            for (const std::string& line : cells[i]) {
                const double x =
                    table_.columns[i].kind == Kind::kNumber
                        ? left + widths_[i] - kPadding - canvas_.WidthOf(line, size_, face)
                        : left + kPadding;
                canvas_.Text(x, base, line, size_, face);
                base += size_ * 1.2;
            }
            left += widths_[i];
        }
        canvas_.Move(height);
        canvas_.Lines({{{kMargin, canvas_.Y()}, {left, canvas_.Y()}}}, rule, ruleColour);
    }

    PdfCanvas& canvas_;
    const ReportTable& table_;
    double size_ = kMostSize;
    std::vector<double> widths_;
    bool hasHead_ = false;
};

class Writer {
public:
    explicit Writer(const std::string& fontFolder) : canvas_(fontFolder) {}

    std::string Write(const Report& report) {
        canvas_.SetInfo(report.title, report.date);
        AddLines(report.title, kTitleSize, Face::kBold);
        canvas_.Move(6);
        for (const ReportSection& section : report.sections) {
            if (!section.title.empty()) {
                canvas_.Need(RoomFor(section));
                canvas_.Move(10);
                AddLines(section.title, kHeadingSize, Face::kBold);
                canvas_.Move(2);
            }
            for (const ReportBlock& block : section.blocks) {
                std::visit([this](const auto& one) { Add(one); }, block);
            }
        }
        AddFooters(report);
        return canvas_.Bytes();
    }

private:
    /// A heading stays with what begins below.
    static double RoomFor(const ReportSection& section) {
        constexpr double kHeading = 30;
        constexpr double kBeginning = 45;
        if (section.blocks.empty()) return kHeading;
        const auto* picture = std::get_if<ReportPicture>(&section.blocks.front());
        return kHeading + (picture == nullptr ? kBeginning : HeightOf(*picture));
    }

    void AddLines(std::string_view text, double size, Face face = Face::kRegular, double indent = 0,
                  Colour colour = PdfCanvas::kBlack) {
        for (const std::string& line : canvas_.Wrapped(text, kTextWidth - indent, size, face)) {
            canvas_.Need(size * kLeading);
            canvas_.Text(kMargin + indent, canvas_.Y() + size, line, size, face, colour);
            canvas_.Move(size * kLeading);
        }
    }

    void Add(const ReportParagraph& paragraph) {
        using Style = ReportParagraph::Kind;
        switch (paragraph.kind) {
            case Style::kPlain: AddLines(paragraph.text, kTextSize); break;
            case Style::kFormula: AddLines(paragraph.text, kSmallSize, Face::kRegular, 12); break;
            case Style::kLegend:
                AddLines(paragraph.text, kSmallSize, Face::kRegular, 0, PdfCanvas::kGrey);
                break;
            case Style::kNote: AddMarked(paragraph.text, PdfCanvas::kGrey, Face::kRegular); break;
            case Style::kWarning:
                AddMarked(paragraph.text, {0.75F, 0.5F, 0}, Face::kRegular);
                break;
            case Style::kSevere: AddMarked(paragraph.text, {0.8F, 0, 0}, Face::kBold); break;
        }
        canvas_.Move(paragraph.kind == Style::kFormula ? 0.5 : 3);
    }

    /// A text with a bar at its left.
    void AddMarked(const std::string& text, Colour bar, Face face) {
        constexpr double kIndent = 8;
        const auto lines = canvas_.Wrapped(text, kTextWidth - kIndent, kTextSize, face);
        canvas_.Need(static_cast<double>(lines.size()) * kTextSize * kLeading);
        const double top = canvas_.Y();
        AddLines(text, kTextSize, face, kIndent);
        if (canvas_.Y() > top) {
            canvas_.Lines({{{kMargin + 2, top + 1}, {kMargin + 2, canvas_.Y()}}}, 2, bar);
        }
    }

    void Add(const ReportTable& table) { TableLayout(canvas_, table).Draw(); }

    static double ScaleOf(const ReportPicture& picture) {
        return std::min(1.0, kTextWidth / picture.width);
    }
    static double HeightOf(const ReportPicture& picture) {
        constexpr double kCaption = 40;
        return picture.height * ScaleOf(picture) + kCaption;
    }

    void Add(const ReportPicture& picture) {
        canvas_.Need(HeightOf(picture));
        const double scale = ScaleOf(picture);
        const double top = canvas_.Y();
        const auto place = [&](Point at) {
            return Point{kMargin + at.first * scale, top + at.second * scale};
        };
        for (std::size_t ink = 0; ink < kInks.size(); ++ink) {
            std::vector<std::pair<Point, Point>> lines;
            for (const ReportPicture::Line& line : picture.lines) {
                if (static_cast<std::size_t>(line.ink) != ink) continue;
                lines.emplace_back(place(line.from), place(line.to));
            }
            canvas_.Lines(lines, 0.6, kInks[ink]);
        }
        const double size = ReportPicture::kLabelSize * scale;
        for (const auto& [at, text, anchor, ink] : picture.labels) {
            const Point base = place(at);
            const double share = anchor == ReportPicture::Anchor::kStart    ? 0.0
                                 : anchor == ReportPicture::Anchor::kMiddle ? 0.5
                                                                            : 1.0;
            canvas_.Text(base.first - share * canvas_.WidthOf(text, size), base.second, text, size,
                         Face::kRegular, kInks[static_cast<std::size_t>(ink)]);
        }
        canvas_.Move(picture.height * scale + 4);
        AddLines(picture.caption, kSmallSize, Face::kRegular, 0, PdfCanvas::kGrey);
    }

    void Add(const ReportSignature& signature) {
        constexpr double kAbove = 55;
        constexpr double kGap = 20;
        canvas_.Need(kAbove + 20);
        canvas_.Move(kAbove);
        const double width = kTextWidth / static_cast<double>(signature.labels.size());
        double left = kMargin;
        for (const std::string& label : signature.labels) {
            canvas_.Lines({{{left, canvas_.Y()}, {left + width - kGap, canvas_.Y()}}}, 0.6,
                          PdfCanvas::kBlack);
            canvas_.Text(left, canvas_.Y() + 11, label, kSmallSize);
            left += width;
        }
        canvas_.Move(20);
    }

    void AddFooters(const Report& report) {
        constexpr double kBase = PdfCanvas::kHeight - 30;
        for (std::size_t page = 0; page < canvas_.PageCount(); ++page) {
            canvas_.TurnTo(page);
            const std::string number = FillPlaces(
                report.pageText, {std::to_string(page + 1), std::to_string(canvas_.PageCount())});
            canvas_.Text(kMargin, kBase, report.title + ", " + report.date, kSmallSize,
                         Face::kRegular, PdfCanvas::kGrey);
            canvas_.Text(kMargin + kTextWidth - canvas_.WidthOf(number, kSmallSize), kBase, number,
                         kSmallSize, Face::kRegular, PdfCanvas::kGrey);
        }
    }

    PdfCanvas canvas_;
};

}  // namespace

std::string PdfOf(const Report& report, const std::string& fontFolder) {
    return Writer(fontFolder.empty() ? KV_TR_FONT_FOLDER : fontFolder).Write(report);
}

}  // namespace kv_tr
