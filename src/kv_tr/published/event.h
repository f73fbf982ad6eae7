// A list of handlers that an object calls when something happens.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
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
/// handlers, itself included, while it runs; those connected then are called from the next time on.
/// Several threads may use an event; a handler that another thread disconnects may still be
/// running. Not copyable: handlers belong to one event.
template <class... Args>
class Event {
public:
    using Handler = std::function<void(Args...)>;

    Event() = default;
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    [[nodiscard]] Subscription Subscribe(Handler handler) {
        const std::size_t key = handlers_->Add(std::move(handler));
        return Subscription([key, list = std::weak_ptr(handlers_)] {
            if (const auto alive = list.lock()) alive->Remove(key);
        });
    }

    void Raise(Args... args) const {
        const auto list = handlers_;  // a handler may destroy the event
        const std::size_t end = list->End();
        for (std::size_t key = 0; const Handler handler = list->First(key, end); ++key) {
            handler(args...);
        }
    }

private:
    class Handlers {
    public:
        std::size_t Add(Handler handler) {
            const std::scoped_lock lock(mutex_);
            handlers_.emplace(nextKey_, std::move(handler));
            return nextKey_++;
        }
        void Remove(std::size_t key) {
            Handler removed;  // destroyed without the lock: that may disconnect another handler
            const std::scoped_lock lock(mutex_);
            const auto entry = handlers_.find(key);
            if (entry == handlers_.end()) return;
            std::swap(removed, entry->second);
            handlers_.erase(entry);
        }
        std::size_t End() {
            const std::scoped_lock lock(mutex_);
            return nextKey_;
        }
        /// The first handler from a key on and before another, and its key; none is empty.
        Handler First(std::size_t& key, std::size_t end) {
            const std::scoped_lock lock(mutex_);
            const auto entry = handlers_.lower_bound(key);
            if (entry == handlers_.end() || entry->first >= end) return {};
            key = entry->first;
            return entry->second;
        }

    private:
        std::mutex mutex_;
        std::map<std::size_t, Handler> handlers_;
        std::size_t nextKey_ = 0;
    };

    std::shared_ptr<Handlers> handlers_ = std::make_shared<Handlers>();
};

}  // namespace kv_tr
