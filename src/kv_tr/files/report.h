// A report as data: what a writer makes a document of.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "kv_tr/model/point.h"

namespace kv_tr {

struct ReportParagraph {
    enum class Kind { kPlain, kFormula, kLegend, kNote, kWarning, kSevere };
    std::string text;
    Kind kind = Kind::kPlain;
};

/// A table; its head is shown again on each page, and not at all when every heading is empty.
struct ReportTable {
    enum class Kind {
        kText,
        kNumber,   ///< aligned on the right, never broken
        kForeign,  ///< from the user's files: in no language, of any length
    };
    struct Column {
        std::string heading;
        Kind kind = Kind::kNumber;
    };
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;  ///< a text a column each
};

/// A picture of lines and texts. Units are points, 1/72 inch; the second axis runs downwards.
struct ReportPicture {
    enum class Ink { kFrame, kPoint, kExcluded, kResidual, kSuspect };
    enum class Anchor { kStart, kMiddle, kEnd };
    struct Line {
        Point from;
        Point to;
        Ink ink = Ink::kFrame;
    };
    struct Label {
        Point at;  ///< of the base line
        std::string text;
        Anchor anchor = Anchor::kStart;
        Ink ink = Ink::kFrame;
    };
    static constexpr double kLabelSize = 7;  // height of the letters

    double width = 0;
    double height = 0;
    std::vector<Line> lines{};
    std::vector<Label> labels{};
    std::string caption{};
};

/// Lines to be filled in by hand, each above what belongs there.
struct ReportSignature {
    std::vector<std::string> labels;
};

using ReportBlock = std::variant<ReportParagraph, ReportTable, ReportPicture, ReportSignature>;

struct ReportSection {
    std::string title;
    std::vector<ReportBlock> blocks{};
};

/// A document in one language. All texts are valid UTF-8 without control characters.
struct Report {
    std::string language;  ///< as BCP 47 has it: "hu", "sr-Latn"
    std::string title;
    std::string date;      ///< "2026-05-31"
    std::string pageText;  ///< "Page {0} of {1}"
    std::vector<ReportSection> sections{};
};

}  // namespace kv_tr
