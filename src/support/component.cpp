// The one shared object and its surroundings.
#include "support/component.h"

#include <locale>
#include <stdexcept>
#include <utility>

#include "support/console_platform.h"

namespace kv_tr {
namespace {

Platform Completed(Platform platform) {
    Platform console = ConsolePlatform();
    if (!platform.messages) platform.messages = std::move(console.messages);
    if (!platform.files) platform.files = std::move(console.files);
    if (!platform.settings) platform.settings = std::move(console.settings);
    if (!platform.texts) platform.texts = std::move(console.texts);
    if (!platform.dialogs) platform.dialogs = std::move(console.dialogs);
    return platform;
}

char UsersDecimalSeparator() {
    try {
        const std::locale users("");
        const char point = std::use_facet<std::numpunct<char>>(users).decimal_point();
        return point == ',' ? ',' : '.';
    } catch (const std::runtime_error&) {  // the environment names a locale the system lacks
        return '.';
    }
}

std::unique_ptr<Component>& Current() {
    static auto component = std::make_unique<Component>(Platform{});
    return component;
}

}  // namespace

Component::Component(Platform surroundings)
    : platform(Completed(std::move(surroundings))), decimalSeparator(UsersDecimalSeparator()) {}

Component& TheComponent() { return *Current(); }

void InstallPlatform(Platform platform) {
    TheComponent().platform = Completed(std::move(platform));
    TheComponent().stringsInitialised = false;
}

Dialogs& OpenDialogs() { return *TheComponent().platform.dialogs; }

ComponentScope::ComponentScope(Platform platform)
    : previous_(std::exchange(Current(), std::make_unique<Component>(std::move(platform)))) {}

ComponentScope::~ComponentScope() { Current() = std::move(previous_); }

}  // namespace kv_tr
