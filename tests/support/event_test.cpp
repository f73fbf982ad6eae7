// Handlers that come and go, also while they are called.
#include "support/event.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kv_tr {
namespace {

TEST(Event, CallsInOrderAndLetsHandlersDisconnectAnyOfThem) {
    Event<const std::string&> event;
    std::string calls;
    std::optional<Subscription> a, b, c;
    a = event.Subscribe([&](const std::string& n) { calls += "a" + n, a.reset(), c.reset(); });
    b = event.Subscribe([&](const std::string& n) { calls += "b" + n; });
    c = event.Subscribe([&](const std::string& n) { calls += "c" + n; });
    event.Raise("1");
    Subscription d = event.Subscribe([&](const std::string& n) { calls += "d" + n; });
    *b = std::move(d);  // takes the place of the handler
    event.Raise("2");
    EXPECT_EQ(calls, "a1b1d2");
}

TEST(Event, MayGoAwayBeforeItsSubscriptionsAndInsideAHandler) {
    auto event = std::make_unique<Event<>>();
    int calls = 0;
    const Subscription a = event->Subscribe([&] { ++calls, event.reset(); });
    const Subscription b = event->Subscribe([&] { ++calls; });
    event->Raise();
    EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace kv_tr
