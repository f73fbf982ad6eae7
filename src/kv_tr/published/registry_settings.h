// The settings of Windows: values in the registry of the current user.
#pragma once

#include <string>

#include "kv_tr/published/platform.h"

namespace kv_tr {

/// Settings below HKEY_CURRENT_USER\Software\<application>\<section>. What cannot be read or
/// written there reads as missing and stays as it is.
class RegistrySettings : public SettingsStore {
public:
    std::string Read(const SettingKey& key, const std::string& fallback) override;
    void Write(const SettingKey& key, const std::string& value) override;
};

}  // namespace kv_tr
