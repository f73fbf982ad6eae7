// The component's own books: its title, and which of its objects are alive.
#include "support/bookkeeping.h"

#include "support/component.h"

namespace kv_tr {

TraceEntry::TraceEntry(const std::string& className) : id_(TheComponent().nextTraceId++) {
    TheComponent().traceObjects[id_] = className;
}

TraceEntry::~TraceEntry() { TheComponent().traceObjects.erase(id_); }

std::string clsComponent::sAppTitle() const { return TheComponent().appTitle; }

void clsComponent::sAppTitle(const std::string& title) { TheComponent().appTitle = title; }

std::map<std::int32_t, std::string> clsDebug::colTraceObj() const {
    return TheComponent().traceObjects;
}

}  // namespace kv_tr
