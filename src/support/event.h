// A list of handlers that an object calls when something happens.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace kv_tr {

/// Keeps a handler connected to an Event; letting it go disconnects the handler.
/// It may outlive the event.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> disconnect) : disconnect_(std::move(disconnect)) {}
    Subscription(Subscription&& other) noexcept
        : disconnect_(std::exchange(other.disconnect_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        Subscription taken(std::move(other));
        std::swap(disconnect_, taken.disconnect_);
        return *this;
    }
    ~Subscription() {
        if (disconnect_) disconnect_();
    }

private:
    std::function<void()> disconnect_;
};

/// Calls its handlers in the order they were connected. A handler may connect and disconnect
/// handlers, itself included, while it runs. Not copyable: handlers belong to one event.
template <class... Args>
class Event {
public:
    using Handler = std::function<void(Args...)>;

    Event() = default;
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    [[nodiscard]] Subscription Subscribe(Handler handler) {
        const std::size_t key = nextKey_++;
        handlers_->emplace(key, std::move(handler));
        return Subscription([key, list = std::weak_ptr(handlers_)] {
            if (const auto alive = list.lock()) alive->erase(key);
        });
    }

    void Raise(Args... args) const {
        const auto list = handlers_;  // a handler may destroy the event
        for (auto entry = list->begin(); entry != list->end();) {
            const std::size_t key = entry->first;
            const Handler handler = entry->second;
            handler(args...);
            entry = list->upper_bound(key);
        }
    }

private:
    using Handlers = std::map<std::size_t, Handler>;
    std::shared_ptr<Handlers> handlers_ = std::make_shared<Handlers>();
    std::size_t nextKey_ = 0;
};

}  // namespace kv_tr
