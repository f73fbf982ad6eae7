// The component's own books: its title, and which of its objects are alive.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace kv_tr {

/// Enters an object into the books for as long as it lives.
class TraceEntry {
public:
    explicit TraceEntry(const std::string& className);
    ~TraceEntry();
    TraceEntry(const TraceEntry&) = delete;
    TraceEntry& operator=(const TraceEntry&) = delete;

    std::int32_t Id() const { return id_; }

private:
    std::int32_t id_;
};

/// Holds the application title, under which the component's settings are kept.
class clsComponent {
public:
    std::string sAppTitle() const;
    void sAppTitle(const std::string& title);

    std::int32_t lDebugId() const { return trace_.Id(); }
    void TearDown() {}  // holds nothing to let go

private:
    TraceEntry trace_{"clsComponent"};
};

/// Shows a host which public objects are alive, to find those it forgot.
class clsDebug {
public:
    /// Ids and class names.
    std::map<std::int32_t, std::string> colTraceObj() const;
    std::string sComponentName() const { return "KV_Tr"; }
};

/// A record without members, for hosts that create one.
class clsRec {};

}  // namespace kv_tr
