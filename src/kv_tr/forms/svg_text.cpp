// Numbers, attributes and texts as SVG documents have them.
#include "kv_tr/forms/svg_text.h"

#include "kv_tr/text/code_page.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr {

std::string SvgNumber(double value) { return FixedText(value, 2); }

std::string SvgAttribute(std::string_view name, double value) {
    return " " + std::string(name) + "=\"" + SvgNumber(value) + "\"";
}

std::string SvgEscaped(std::string_view foreign) {
    const std::string text = ValidUtf8(foreign);
    std::string escaped;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const auto three = std::string_view(text).substr(i, 3);
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

}  // namespace kv_tr
