// The page of the residual graph as an SVG document.
#include <algorithm>
#include <array>
#include <string_view>

#include "kv_tr/forms/graph_page.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr {
namespace {

/// A number with a point, whatever the decimal separator is.
std::string Number(double value) {
    std::string text = FormatFixed(value, 2, 0);
    std::ranges::replace(text, ',', '.');
    return text;
}

std::string Attribute(const char* name, double value) {
    return " " + std::string(name) + "=\"" + Number(value) + "\"";
}

/// The text as XML may have it; what XML lacks becomes a blank.
std::string Escaped(std::string_view text) {
    std::string escaped;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const auto three = text.substr(i, 3);
        if (three == "\uFFFE" || three == "\uFFFF") {
            escaped += ' ';
            i += 2;
            continue;
        }
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            default: escaped += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
    }
    return escaped;
}

std::string Text(Point base, const std::string& attributes, const std::string& text) {
    return "<text" + Attribute("x", base.first) + Attribute("y", base.second) + attributes + ">" +
           Escaped(text) + "</text>\n";
}

std::string Class(const GraphMark& mark) {
    const std::string colour = mark.colour == kRed    ? "red"
                               : mark.colour == kBlue ? "blue"
                                                      : "black";
    return " class=\"" + colour + (mark.bold ? " bold\"" : "\"");
}

std::string Mark(const GraphMark& mark) {
    const auto [x, y] = mark.place;
    std::string svg = "<g" + Class(mark) + "><path d=\"M" + Number(x - kCrossArm) + " " +
                      Number(y) + "h10M" + Number(x) + " " + Number(y - kCrossArm) + "v10\"/>";
    for (std::size_t corner = 0; corner < mark.labels.size(); ++corner) {
        if (mark.labels[corner].empty()) continue;
        const bool left = corner == GraphMark::kUpperLeft || corner == GraphMark::kLowerLeft;
        const bool upper = corner == GraphMark::kUpperLeft || corner == GraphMark::kUpperRight;
        svg +=
            Text({left ? x - kLabelGap : x + kLabelGap, upper ? y - 3 : y + GraphPage::kLabelSize},
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
    const auto size = Attribute("width", width) + Attribute("height", height);
    const std::string corner = Number(-kMargin);
    std::string svg =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\"" +
        size + " viewBox=\"" + corner + " " + corner + " " + Number(width) + " " + Number(height) +
        "\">\n" + kStyle + "<rect" + Attribute("x", -kMargin) + Attribute("y", -kMargin) + size +
        " fill=\"#fff\"/>\n";
    double base = GraphPage::kTitleSize;
    svg += Text({0, base}, Attribute("font-size", GraphPage::kTitleSize) + " font-weight=\"bold\"",
                page.title);
    for (const std::string& line : page.lines) {
        base += GraphPage::kLineStep;
        svg += Text({0, base}, Attribute("font-size", GraphPage::kLineSize), line);
    }
    svg += "<svg" + Attribute("y", page.planTop) + Attribute("width", page.width) +
           Attribute("height", page.height - page.planTop) +
           Attribute("font-size", GraphPage::kLabelSize) +
           ">\n<rect width=\"100%\" height=\"100%\" fill=\"none\" stroke=\"#888\"/>\n";
    for (const GraphMark& mark : page.marks) svg += Mark(mark);
    return svg + "</svg>\n</svg>\n";
}

}  // namespace kv_tr
