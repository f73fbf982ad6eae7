// The component's own books: its title, and which of its objects are alive.
#include "kv_tr/published/bookkeeping.h"

#include "kv_tr/published/component.h"

namespace kv_tr {

TraceEntry::TraceEntry(const std::string& className)
    : id_(TheComponent().WithRegisters([&](Registers& registers) {
          registers.traceObjects[registers.nextTraceId] = className;
          return registers.nextTraceId++;
      })) {}

TraceEntry::~TraceEntry() {
    TheComponent().WithRegisters(
        [this](Registers& registers) { registers.traceObjects.erase(id_); });
}

std::string clsComponent::sAppTitle() const {
    return TheComponent().WithRegisters([](Registers& registers) { return registers.appTitle; });
}

void clsComponent::sAppTitle(const std::string& title) {
    TheComponent().WithRegisters([&](Registers& registers) { registers.appTitle = title; });
}

std::map<std::int32_t, std::string> clsDebug::colTraceObj() const {
    return TheComponent().WithRegisters(
        [](Registers& registers) { return registers.traceObjects; });
}

}  // namespace kv_tr
