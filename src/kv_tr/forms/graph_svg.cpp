// The page of the residual graph as an SVG document.
#include "kv_tr/forms/graph_page.h"
#include "kv_tr/forms/svg_text.h"

namespace kv_tr {
namespace {

std::string TextElement(Point base, const std::string& attributes, const std::string& text) {
    return "<text" + SvgAttribute("x", base.first) + SvgAttribute("y", base.second) + attributes +
           ">" + SvgEscaped(text) + "</text>\n";
}

std::string Class(const GraphMark& mark) {
    const std::string colour = mark.colour == kRed    ? "red"
                               : mark.colour == kBlue ? "blue"
                                                      : "black";
    return " class=\"" + colour + (mark.bold ? " bold\"" : "\"");
}

std::string Mark(const GraphMark& mark) {
    const auto [x, y] = mark.place;
    std::string svg = "<g" + Class(mark) + "><path d=\"M" + SvgNumber(x - kCrossArm) + " " +
                      SvgNumber(y) + "h10M" + SvgNumber(x) + " " + SvgNumber(y - kCrossArm) +
                      "v10\"/>";
    for (std::size_t corner = 0; corner < mark.labels.size(); ++corner) {
        if (mark.labels[corner].empty()) continue;
        const bool left = corner == GraphMark::kUpperLeft || corner == GraphMark::kLowerLeft;
        const bool upper = corner == GraphMark::kUpperLeft || corner == GraphMark::kUpperRight;
        svg += TextElement(
            {left ? x - kLabelGap : x + kLabelGap, upper ? y - 3 : y + GraphPage::kLabelSize},
            left ? " text-anchor=\"end\"" : "", mark.labels[corner]);
    }
    return svg + "</g>\n";
}

constexpr const char* kStyle =
    "<style>text{font-family:'DejaVu Sans',Verdana,sans-serif;white-space:pre}"
    ".red{stroke:#f00;fill:#f00}.blue{stroke:#00f;fill:#00f}.black{stroke:#000;fill:#000}"
    "g text{stroke:none}.bold{font-weight:bold;stroke-width:2}</style>\n";

}  // namespace

std::string SvgOf(const GraphPage& page) {
    constexpr double kMargin = GraphPage::kMargin;
    const double width = page.width + 2 * kMargin;
    const double height = page.height + 2 * kMargin;
    const auto size = SvgAttribute("width", width) + SvgAttribute("height", height);
    const std::string corner = SvgNumber(-kMargin);
    std::string svg =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\"" +
        size + " viewBox=\"" + corner + " " + corner + " " + SvgNumber(width) + " " +
        SvgNumber(height) + "\">\n" + kStyle + "<rect" + SvgAttribute("x", -kMargin) +
        SvgAttribute("y", -kMargin) + size + " fill=\"#fff\"/>\n";
    double base = GraphPage::kTitleSize;
    svg += TextElement({0, base},
                       SvgAttribute("font-size", GraphPage::kTitleSize) + " font-weight=\"bold\"",
                       page.title);
    for (const std::string& line : page.lines) {
        base += GraphPage::kLineStep;
        svg += TextElement({0, base}, SvgAttribute("font-size", GraphPage::kLineSize), line);
    }
    svg += "<svg" + SvgAttribute("y", page.planTop) + SvgAttribute("width", page.width) +
           SvgAttribute("height", page.height - page.planTop) +
           SvgAttribute("font-size", GraphPage::kLabelSize) +
           ">\n<rect width=\"100%\" height=\"100%\" fill=\"none\" stroke=\"#888\"/>\n";
    for (const GraphMark& mark : page.marks) svg += Mark(mark);
    return svg + "</svg>\n</svg>\n";
}

}  // namespace kv_tr
