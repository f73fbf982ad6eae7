// The one shared object: everything that all objects of the component have in common.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "support/platform.h"

namespace kv_tr {

/// Component-wide state. Free functions of this room read and change it; other rooms do so only
/// through them (GetMlString, ShowMessage, InitDir, DecimalSeparator, OpenDialogs, ...).
struct Component {
    explicit Component(Platform surroundings);

    Platform platform;          // every port is present
    std::int32_t language = 0;  // 0 until a language is set
    bool stringsInitialised = false;
    bool useTextFile = false;  // texts come from a separate file
    std::string initDir;       // where file choosers open
    std::string appTitle;      // names the settings, "KV_Tr" when empty
    char decimalSeparator;     // '.' or ',', the user's when the component starts
    std::map<std::int32_t, std::string> traceObjects;  // living public objects, id and class
    std::int32_t nextTraceId = 1;
    std::set<std::int16_t> fileNumbers;  // of the text files that are open
};

Component& TheComponent();

/// Gives the component its surroundings. Call it before the first object is created: objects keep
/// listening to the texts they were created with. Ports left empty become the console's.
void InstallPlatform(Platform platform);

/// The folder of the library or program that the component is part of.
std::filesystem::path ComponentFolder();

/// The windows of the component.
Dialogs& OpenDialogs();

/// Replaces the whole component for as long as the scope lives. Objects created inside must not
/// outlive it.
class ComponentScope {
public:
    explicit ComponentScope(Platform platform);
    ~ComponentScope();
    ComponentScope(const ComponentScope&) = delete;
    ComponentScope& operator=(const ComponentScope&) = delete;

private:
    std::unique_ptr<Component> previous_;
};

}  // namespace kv_tr
