// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Subscription.hpp"

#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace quillane::core {

/// A list of callbacks for one kind of notification, in the order of subscription. A callback may subscribe,
/// unsubscribe itself or others, and destroy the list during a notification. One thread only.
template <typename... Arguments>
class Listeners {
public:
    using Callback = std::function<void(Arguments...)>;

    Subscription subscribe(Callback callback) {
        const auto id = state_->next++;
        state_->callbacks.emplace(id, std::move(callback));
        return Subscription([weak = std::weak_ptr(state_), id] {
            if (const auto state = weak.lock()) {
                state->callbacks.erase(id);
            }
        });
    }

    void notify(Arguments... arguments) const {
        const auto state = state_; // the list may be destroyed by a callback
        for (auto it = state->callbacks.begin(); it != state->callbacks.end();) {
            const auto id = it->first;
            const auto callback = it->second; // the entry may be erased by the callback itself
            callback(arguments...);
            it = state->callbacks.upper_bound(id);
        }
    }

    [[nodiscard]] bool empty() const { return state_->callbacks.empty(); }

private:
    struct State {
        std::map<unsigned long long, Callback> callbacks;
        unsigned long long next = 0;
    };

    std::shared_ptr<State> state_ = std::make_shared<State>(); // shared with tokens that may outlive the list
};

} // namespace quillane::core
