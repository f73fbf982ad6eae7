// The settings of Windows: values in the registry of the current user.
#include "kv_tr/published/registry_settings.h"

#include "kv_tr/text/wide_text.h"
#include "kv_tr/text/windows_api.h"

namespace kv_tr {
namespace {

std::wstring Folder(const SettingKey& key) {
    return L"Software\\" + Wide(key.application) + L"\\" + Wide(key.section);
}

}  // namespace

std::string RegistrySettings::Read(const SettingKey& key, const std::string& fallback) {
    std::wstring value(32768, L'\0');
    auto bytes = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    if (RegGetValueW(HKEY_CURRENT_USER, Folder(key).c_str(), Wide(key.key).c_str(), RRF_RT_REG_SZ,
                     nullptr, value.data(), &bytes) != ERROR_SUCCESS) {
        return fallback;
    }
    return Utf8(value.c_str());
}

void RegistrySettings::Write(const SettingKey& key, const std::string& value) {
    const std::wstring wide = Wide(value);
    const auto bytes = static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t));
    RegSetKeyValueW(HKEY_CURRENT_USER, Folder(key).c_str(), Wide(key.key).c_str(), REG_SZ,
                    wide.c_str(), bytes);
}

}  // namespace kv_tr
