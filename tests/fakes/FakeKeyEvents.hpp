// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyEvents.hpp"

#include <set>
#include <vector>

namespace quillane::fakes {

/// A keyboard whose modifiers a test holds down.
class FakeKeyEvents final : public KeyEvents {
public:
    [[nodiscard]] core::EventFlags currentFlags() const override { return flags_; }

    [[nodiscard]] bool isKeyDown(core::KeyCode keyCode) const override { return down_.contains(keyCode); }

    [[nodiscard]] bool goesToTerminal(pid_t pid) const override { return terminals.contains(pid); }

    void press(core::KeyCode keyCode) { down_.insert(keyCode); }

    void release(core::KeyCode keyCode) { down_.erase(keyCode); }

    /// As where posted keys carry their own modifiers.
    [[nodiscard]] bool postKey(pid_t pid, core::KeyCode keyCode, core::EventFlags flags) override {
        if (!refusesKeys) {
            posted.push_back({pid, keyCode, flags});
        }
        return !refusesKeys;
    }

    struct PostedKey {
        pid_t pid;
        core::KeyCode keyCode;
        core::EventFlags flags;
        bool operator==(const PostedKey&) const = default;
    };

    std::set<pid_t> terminals;     ///< processes with a terminal in focus
    std::vector<PostedKey> posted; ///< every key, in order
    bool refusesKeys = false;      ///< as while other modifiers are held

    void setCurrentFlags(core::EventFlags flags) { flags_ = flags; }

private:
    core::EventFlags flags_ = 0;
    std::set<core::KeyCode> down_;
};

} // namespace quillane::fakes
