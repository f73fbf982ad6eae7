// The way to talk to the user.
#include "support/message.h"

#include "support/component.h"

namespace kv_tr {

void ShowMessage(const std::string& text, Icon icon, const std::string& title) {
    TheComponent().platform.messages->Show({.text = text, .title = title, .icon = icon});
}

Answer Ask(const Message& question) { return TheComponent().platform.messages->Show(question); }

}  // namespace kv_tr
