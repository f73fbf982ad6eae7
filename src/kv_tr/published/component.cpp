// The one shared object and its surroundings.
#include "kv_tr/published/component.h"

#ifdef _WIN32
#include "kv_tr/text/windows_api.h"
#else
#include <dlfcn.h>
#include <link.h>
#endif

#include <locale>
#include <stdexcept>
#include <utility>

#include "kv_tr/published/console_platform.h"

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
#ifdef _WIN32  // where the C++ library knows the locale "C" alone
    wchar_t separator[4] = L".";
    GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SDECIMAL, separator, 4);
    return separator[0] == L',' ? ',' : '.';
#else
    try {
        const std::locale users("");
        const char point = std::use_facet<std::numpunct<char>>(users).decimal_point();
        return point == ',' ? ',' : '.';
    } catch (const std::runtime_error&) {  // the environment names a locale the system lacks
        return '.';
    }
#endif
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

std::filesystem::path ComponentFolder() {
    static const char kWithinTheComponent = 0;
#ifdef _WIN32
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCWSTR>(&kWithinTheComponent), &module);
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return std::filesystem::path(path).parent_path();
#else
    Dl_info info{};
    link_map* map = nullptr;
    dladdr1(&kWithinTheComponent, &info, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP);
    const bool inTheProgram = map == nullptr || *map->l_name == '\0';
    std::error_code error;
    const std::filesystem::path module = inTheProgram ? "/proc/self/exe" : map->l_name;
    return std::filesystem::canonical(module, error).parent_path();
#endif
}

Dialogs& OpenDialogs() { return *TheComponent().platform.dialogs; }

const PdfMaker& MakerOfPdf() { return TheComponent().platform.makePdf; }

ComponentScope::ComponentScope(Platform platform)
    : previous_(std::exchange(Current(), std::make_unique<Component>(std::move(platform)))) {}

ComponentScope::~ComponentScope() { Current() = std::move(previous_); }

}  // namespace kv_tr
