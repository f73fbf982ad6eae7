// A report as one HTML file.
#include "kv_tr/files/report_html.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "kv_tr/text/number_text.h"

namespace kv_tr {
namespace {

using Ink = ReportPicture::Ink;
using Kind = ReportTable::Kind;

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

/// Foreign text: not to be translated, and its direction of writing ends with it.
std::string Foreign(std::string_view text) {
    return "<bdi translate=\"no\">" + Escaped(text) + "</bdi>";
}

constexpr const char* kStyle = R"(<style>
:root { color-scheme: light dark; --ink: #111; --paper: #fff; --faint: #777; --rule: #bbb;
  --residual: #0645ad; --suspect: #c00; --excluded: #777; --warning: #fff3cd; --severe: #f8d7da; }
@media screen and (prefers-color-scheme: dark) {
  :root { --ink: #e6e6e6; --paper: #16181b; --faint: #9a9a9a; --rule: #4a4d52;
    --residual: #8ab4f8; --suspect: #ff7b72; --excluded: #9a9a9a; --warning: #463a10;
    --severe: #55191d; }
}
@page { size: A4; margin: 18mm 15mm; }
body { font: 10pt/1.4 "DejaVu Sans", Verdana, "Segoe UI", sans-serif; color: var(--ink);
  background: var(--paper); max-width: 190mm; margin: 1.5em auto; padding: 0 1em; }
h1 { font-size: 16pt; margin: 0 0 .6em; }
h2 { font-size: 11.5pt; margin: 1.4em 0 .4em; break-after: avoid; }
p { margin: .4em 0; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; margin: .5em 0; font-size: 8.5pt; line-height: 1.3; }
table.dense { font-size: 7pt; }
thead { display: table-header-group; }
tr { break-inside: avoid; }
th, td { padding: .15em .45em; text-align: left; vertical-align: top; }
th { border-bottom: 1px solid var(--ink); font-weight: 600; }
td { border-bottom: 1px solid var(--rule); overflow-wrap: anywhere; }
.number { text-align: right; white-space: nowrap; font-variant-numeric: tabular-nums;
  overflow-wrap: normal; }
.formula { font-family: "DejaVu Sans Mono", Consolas, monospace; font-size: 8.5pt; margin: .1em 0; }
.legend { font-size: 8.5pt; color: var(--faint); }
.note, .warning, .severe { padding: .3em .6em; border-left: 3px solid var(--faint); }
.warning { background: var(--warning); border-color: #b8860b; }
.severe { background: var(--severe); border-color: var(--suspect); }
figure { margin: .5em 0; break-inside: avoid; }
svg { display: block; width: 100%; max-width: 173mm; height: auto; }
svg path { fill: none; stroke-width: .7; }
svg text { font: 7px "DejaVu Sans", Verdana, sans-serif; }
.frame { stroke: var(--faint); } text.frame { stroke: none; fill: var(--faint); }
.point { stroke: var(--ink); } text.point { stroke: none; fill: var(--ink); }
.excluded { stroke: var(--excluded); } text.excluded { stroke: none; fill: var(--excluded); }
.residual { stroke: var(--residual); } text.residual { stroke: none; fill: var(--residual); }
.suspect { stroke: var(--suspect); } text.suspect { stroke: none; fill: var(--suspect); }
.signature { display: flex; gap: 2em; margin-top: 5em; break-inside: avoid; }
.signature div { flex: 1; border-top: 1px solid var(--ink); padding-top: .3em; }
@media print { body { margin: 0; padding: 0; max-width: none; } .wide { overflow: visible; } }
</style>
)";

constexpr std::array kInkClasses{"frame", "point", "excluded", "residual", "suspect"};
constexpr std::array kParagraphClasses{"",
                                       " class=\"formula\"",
                                       " class=\"legend\"",
                                       " class=\"note\"",
                                       " class=\"warning\"",
                                       " class=\"severe\""};

class Writer {
public:
    std::string Write(const Report& report) {
        html_ = "<!DOCTYPE html>\n<html lang=\"" + Escaped(report.language) +
                "\">\n<head>\n<meta charset=\"utf-8\">\n"
                "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                "<title>" +
                Escaped(report.title) + "</title>\n" + kStyle + "</head>\n<body>\n<h1>" +
                Escaped(report.title) + "</h1>\n";
        for (const ReportSection& section : report.sections) {
            html_ += "<section>\n";
            if (!section.title.empty()) html_ += "<h2>" + Escaped(section.title) + "</h2>\n";
            for (const ReportBlock& block : section.blocks) {
                std::visit([this](const auto& one) { Add(one); }, block);
            }
            html_ += "</section>\n";
        }
        return std::move(html_) + "</body>\n</html>\n";
    }

private:
    void Add(const ReportParagraph& paragraph) {
        html_ += std::string("<p") + kParagraphClasses[static_cast<std::size_t>(paragraph.kind)] +
                 ">" + Escaped(paragraph.text) + "</p>\n";
    }

    void Add(const ReportTable& table) {
        constexpr std::size_t kManyColumns = 10;
        html_ += "<div class=\"wide\"><table";
        if (table.columns.size() > kManyColumns) html_ += " class=\"dense\"";
        html_ += ">\n";
        const auto classOf = [](Kind kind) {
            return std::string(kind == Kind::kNumber ? " class=\"number\"" : "");
        };
        const bool hasHead = std::ranges::any_of(
            table.columns, [](const auto& column) { return !column.heading.empty(); });
        if (hasHead) {
            html_ += "<thead><tr>";
            for (const auto& [heading, kind] : table.columns) {
                html_ += "<th scope=\"col\"" + classOf(kind) + ">" + Escaped(heading) + "</th>";
            }
            html_ += "</tr></thead>\n";
        }
        html_ += "<tbody>\n";
        for (const auto& row : table.rows) {
            html_ += "<tr>";
            for (std::size_t i = 0; i < row.size(); ++i) {
                const Kind kind = table.columns[i].kind;
                html_ += "<td" + classOf(kind) + ">" +
                         (kind == Kind::kForeign ? Foreign(row[i]) : Escaped(row[i])) + "</td>";
            }
            html_ += "</tr>\n";
        }
        html_ += "</tbody></table></div>\n";
    }

    static std::string Number(double value) { return FixedText(value, 2); }

    void Add(const ReportPicture& picture) {
        html_ += "<figure>\n<svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\" viewBox=\"0 0 " +
                 Number(picture.width) + " " + Number(picture.height) + "\">\n";
        for (std::size_t ink = 0; ink < kInkClasses.size(); ++ink) {
            std::string path;
            for (const auto& [from, to, lineInk] : picture.lines) {
                if (lineInk != static_cast<Ink>(ink)) continue;
                path += "M" + Number(from.first) + " " + Number(from.second) + "L" +
                        Number(to.first) + " " + Number(to.second);
            }
            if (path.empty()) continue;
            html_ += std::string("<path class=\"") + kInkClasses[ink] + "\" d=\"" + path + "\"/>\n";
        }
        constexpr std::array kAnchors{"", " text-anchor=\"middle\"", " text-anchor=\"end\""};
        for (const auto& [at, text, anchor, ink] : picture.labels) {
            html_ += std::string("<text class=\"") + kInkClasses[static_cast<std::size_t>(ink)] +
                     "\" x=\"" + Number(at.first) + "\" y=\"" + Number(at.second) + "\"" +
                     kAnchors[static_cast<std::size_t>(anchor)] + ">" + Escaped(text) + "</text>\n";
        }
        html_ += "</svg>\n<figcaption class=\"legend\">" + Escaped(picture.caption) +
                 "</figcaption>\n</figure>\n";
    }

    void Add(const ReportSignature& signature) {
        html_ += "<div class=\"signature\">";
        for (const std::string& label : signature.labels) {
            html_ += "<div>" + Escaped(label) + "</div>";
        }
        html_ += "</div>\n";
    }

    std::string html_;
};

}  // namespace

std::string HtmlOf(const Report& report) { return Writer().Write(report); }

}  // namespace kv_tr
