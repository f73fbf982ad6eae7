// The one shared object: everything that all objects of the component have in common.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "kv_tr/published/event.h"
#include "kv_tr/published/platform.h"

namespace kv_tr {

/// What objects of several threads read and change, one at a time.
struct Registers {
    std::string initDir;                               // where file choosers open
    std::string appTitle;                              // names the settings, "KV_Tr" when empty
    std::map<std::int32_t, std::string> traceObjects;  // living public objects, id and class
    std::int32_t nextTraceId = 1;
    std::set<std::int16_t> fileNumbers;  // of the text files that are open
};

/// Component-wide state. Free functions of this room read and change it; other rooms do so only
/// through them (GetMlString, ShowMessage, InitDir, DecimalSeparator, OpenDialogs, ...).
///
/// Several threads may do so at once. The platform is the exception: it is installed before the
/// first object is created, and each port is called from the thread of the object that needs it.
struct Component {
    explicit Component(Platform surroundings);

    Platform platform;                       // every port is present
    Event<> messageComing;                   // raised in the thread that shows a message
    std::atomic<std::int32_t> language = 0;  // 0 until a language is set
    std::atomic<bool> stringsInitialised = false;
    std::atomic<bool> useTextFile = false;  // texts come from a separate file
    std::atomic<char> decimalSeparator;     // '.' or ',', the user's when the component starts

    /// Yields what a function makes of the registers. It must not call a port.
    auto WithRegisters(auto function) {
        const std::scoped_lock lock(mutex_);
        return function(registers_);
    }

private:
    std::mutex mutex_;
    Registers registers_;
};

Component& TheComponent();

/// Gives the component its surroundings. Call it before the first object is created: objects keep
/// listening to the texts they were created with. Ports left empty become the console's.
void InstallPlatform(Platform platform);

/// The folder of the library or program that the component is part of.
std::filesystem::path ComponentFolder();

/// The windows of the component.
Dialogs& OpenDialogs();

/// What makes reports PDF; empty where nothing does.
const PdfMaker& MakerOfPdf();

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
