// The event that says that what is shown may have changed: once an action.
#pragma once

#include <functional>
#include <utility>

#include "kv_tr/published/event.h"
#include "kv_tr/published/message.h"

namespace kv_tr {

/// Calls its handlers at every change, or, while an action lasts, once at the action's end. Actions
/// may be nested; the outermost one counts. A message that is shown after a change finds everything
/// drawn as it is then: the handlers are called before the message too.
///
///     void Form::cmdClear() {
///         const ChangeEvent::Action action(Changed);
///         RemovePoints();  // raises Changed
///         Refit();         // raises Changed too: the window is drawn when the action ends
///     }
class ChangeEvent {
public:
    [[nodiscard]] Subscription Subscribe(std::function<void()> handler) {
        return event_.Subscribe(std::move(handler));
    }

    void Raise() {
        pending_ = actions_ > 0;
        if (!pending_) event_.Raise();
    }

    class Action {
    public:
        explicit Action(ChangeEvent& event) : event_(event) {
            if (event_.actions_++ > 0) return;
            beforeMessages_ = BeforeMessages([&event] {
                if (event.pending_) event.event_.Raise();
            });
        }
        ~Action() {
            if (--event_.actions_ == 0 && event_.pending_) event_.Raise();
        }
        Action(const Action&) = delete;
        Action& operator=(const Action&) = delete;

    private:
        ChangeEvent& event_;
        Subscription beforeMessages_;
    };

private:
    Event<> event_;
    int actions_ = 0;       // that have not ended
    bool pending_ = false;  // something has changed in the action
};

}  // namespace kv_tr
