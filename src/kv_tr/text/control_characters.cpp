// Foreign text that must not command a terminal or forge a line.
#include "kv_tr/text/control_characters.h"

#include "kv_tr/text/code_page.h"

namespace kv_tr {
namespace {

/// The bytes of the control character that a text begins with; 0 for another one.
std::size_t ControlSize(std::string_view text) {
    const auto byte = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    if (byte(0) < 0x20 || byte(0) == 0x7F) return 1;
    return text.size() > 1 && byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) <= 0x9F ? 2 : 0;
}

}  // namespace

std::string WithoutControls(std::string_view foreign, std::string_view kept) {
    const std::string valid = ValidUtf8(foreign);
    std::string_view text = valid;
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const bool keep = kept.find(text.front()) != kept.npos;
        const std::size_t control = keep ? 0 : ControlSize(text);
        shown += control == 0 ? text.front() : '_';
        text.remove_prefix(control == 0 ? 1 : control);
    }
    return shown;
}

}  // namespace kv_tr
