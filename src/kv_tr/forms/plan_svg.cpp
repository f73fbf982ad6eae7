// A plan as an SVG document.
#include "kv_tr/forms/plan_drawing.h"
#include "kv_tr/forms/svg_text.h"

namespace kv_tr {
namespace {

std::string Hex(Colour colour) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "#";
    for (const int part : {int{colour.red}, int{colour.green}, int{colour.blue}}) {
        text += kDigits[part / 16];
        text += kDigits[part % 16];
    }
    return text;
}

std::string InkOf(PlanInk ink) { return Hex(ColourOf(ink, PlanPaper::kLight)); }

std::string At(Point point) { return SvgNumber(point.first) + " " + SvgNumber(point.second); }

std::string SvgOfItem(const PlanLines& lines) {
    if (lines.segments.empty()) return {};
    std::string svg = R"(<path fill="none" stroke=")" + InkOf(lines.ink) + "\"" +
                      SvgAttribute("stroke-width", lines.width) +
                      (lines.isDashed ? " stroke-dasharray=\"6 4\"" : "") + " d=\"";
    for (const auto& [from, to] : lines.segments) svg += "M" + At(from) + "L" + At(to);
    return svg + "\"/>\n";
}

std::string SvgOfItem(const PlanSymbols& symbols) {
    using Shape = PlanSymbols::Shape;
    const std::string colour = InkOf(symbols.ink);
    const bool isHollow = symbols.shape == Shape::kCircle;
    std::string svg = isHollow ? R"(<g fill="none" stroke=")" + colour + "\"" +
                                     SvgAttribute("stroke-width", symbols.width) + ">\n"
                               : "<g fill=\"" + colour + "\">\n";
    const double size = symbols.size;
    for (const auto& [x, y] : symbols.places) {
        if (isHollow || symbols.shape == Shape::kDisc) {
            svg += "<circle" + SvgAttribute("cx", x) + SvgAttribute("cy", y) +
                   SvgAttribute("r", size) + "/>\n";
            continue;
        }
        svg += "<path d=\"M";
        const char* separator = "";
        for (const Point corner : CornersOf(symbols.shape)) {
            svg += separator + At({x + size * corner.first, y + size * corner.second});
            separator = "L";
        }
        svg += "z\"/>\n";
    }
    return svg + "</g>\n";
}

std::string SvgOfItem(const PlanText& text) {
    using Anchor = PlanText::Anchor;
    return "<text" + SvgAttribute("x", text.base.first) + SvgAttribute("y", text.base.second) +
           SvgAttribute("font-size", text.size) + " fill=\"" + InkOf(text.ink) + "\"" +
           (text.isBold ? " font-weight=\"bold\"" : "") +
           (text.anchor == Anchor::kMiddle ? " text-anchor=\"middle\""
            : text.anchor == Anchor::kEnd  ? " text-anchor=\"end\""
                                           : "") +
           ">" + SvgEscaped(text.text) + "</text>\n";
}

std::string SvgOfItems(const std::vector<PlanItem>& items) {
    std::string svg;
    for (const PlanItem& item : items) {
        svg += std::visit([](const auto& kind) { return SvgOfItem(kind); }, item);
    }
    return svg;
}

std::string Rectangle(const PlanRect& rect, const std::string& attributes) {
    return "<rect" + SvgAttribute("x", rect.left) + SvgAttribute("y", rect.top) +
           SvgAttribute("width", rect.Width()) + SvgAttribute("height", rect.Height()) +
           attributes + "/>\n";
}

}  // namespace

std::string SvgOf(const PlanPicture& picture, double margin) {
    const PlanRect sheet{-margin, -margin, picture.width + margin, picture.height + margin};
    const std::string size =
        SvgAttribute("width", sheet.Width()) + SvgAttribute("height", sheet.Height());
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<svg xmlns=\"http://www.w3.org/2000/svg\"" +
           size + " viewBox=\"" + At({sheet.left, sheet.top}) + " " +
           At({sheet.Width(), sheet.Height()}) +
           "\" font-family=\"'DejaVu Sans',Verdana,sans-serif\" xml:space=\"preserve\">\n" +
           Rectangle(sheet, " fill=\"#fff\"") + "<clipPath id=\"frame\">" +
           Rectangle(picture.frame, "") + "</clipPath>\n<g clip-path=\"url(#frame)\">\n" +
           SvgOfItems(picture.inside) + "</g>\n" +
           Rectangle(picture.frame, R"( fill="none" stroke="#888")") + SvgOfItems(picture.outside) +
           "</svg>\n";
}

}  // namespace kv_tr
