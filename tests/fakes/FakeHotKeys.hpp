// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Listeners.hpp"
#include "platform/HotKeys.hpp"
#include "platform/MainQueue.hpp"

#include <algorithm>
#include <memory>
#include <vector>

namespace quillane::fakes {

/// Hot keys that a test presses, and that another program may have.
class FakeHotKeys final : public HotKeys {
public:
    explicit FakeHotKeys(MainQueue& queue) : queue_(queue) {}

    [[nodiscard]] core::Subscription registerHotKey(const HotKey& key, std::function<void()> pressed,
                                                    std::function<void()> taken) override {
        if (std::ranges::find(others_, key) != others_.end()) {
            const auto alive = std::make_shared<int>(); // as long as the token
            queue_.post([weak = std::weak_ptr(alive), taken = std::move(taken)] {
                if (!weak.expired()) {
                    taken();
                }
            });
            return core::Subscription([alive] {});
        }
        registered_->push_back({key, std::move(pressed)});
        return core::Subscription([weak = std::weak_ptr(registered_), key] {
            if (const auto registered = weak.lock()) {
                std::erase_if(*registered, [&](const Registered& one) { return one.key == key; });
            }
        });
    }

    /// The user presses it; false when it is not registered here.
    bool press(const HotKey& key) {
        const auto found = std::ranges::find(*registered_, key, &Registered::key);
        if (found == registered_->end()) {
            return false;
        }
        const auto pressed = found->pressed; // it may be unregistered by the call
        pressed();
        return true;
    }

    [[nodiscard]] bool isRegistered(const HotKey& key) const {
        return std::ranges::find(*registered_, key, &Registered::key) != registered_->end();
    }

    /// Another program takes the key, or gives it back.
    void take(const HotKey& key) { others_.push_back(key); }

    void giveBack(const HotKey& key) { std::erase(others_, key); }

private:
    struct Registered {
        HotKey key;
        std::function<void()> pressed;
    };

    MainQueue& queue_;
    std::shared_ptr<std::vector<Registered>> registered_ =
        std::make_shared<std::vector<Registered>>(); // shared with tokens
    std::vector<HotKey> others_;
};

} // namespace quillane::fakes
