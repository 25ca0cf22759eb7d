// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/EventTap.hpp"
#include "support/Journal.hpp"

#include <functional>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace quillane::fakes {

/// An event tap that a test feeds. It refuses what a real one refuses: it is not created without the permission,
/// receives nothing while it is disabled, receives only modifiers during secure input, and replaces text only of keys
/// that were named before. What it holds back goes to `onLetGo`.
class FakeEventTap final : public EventTap {
public:
    [[nodiscard]] bool start(std::uint64_t mask, Receiver receiver) override;
    void stop() override;
    void enable() override;

    [[nodiscard]] bool isEnabled() const override { return exists() && enabled_; }

    void setReplaceableKeys(std::span<const core::KeyCode> keys) override;
    void hold() override;
    void letGo() override;

    [[nodiscard]] bool isHolding() const override { return holding_; }

    /// Passes the event through the tap and returns what goes on to the application in front; none when it is held
    /// back.
    std::optional<InputEvent> send(InputEvent event);

    /// Is given each event that was held back.
    void onLetGo(std::function<void(const InputEvent&)> handler) { onLetGo_ = std::move(handler); }

    /// The system disables the tap and says so through it, as it does with a slow receiver.
    void disable(EventType reason = EventType::tapDisabledByTimeout);

    /// Checked when a tap is created; without permission there is none. An existing one is not affected.
    void permitWhen(std::function<bool()> permitted) { permitted_ = std::move(permitted); }

    /// Asked for each key: while it holds, as while secure input is on (TN2150), keys are pressed and released unseen.
    /// Modifiers still are seen.
    void hideKeysWhen(std::function<bool()> hidden) { hidden_ = std::move(hidden); }

    /// A tap that is created, yet never gets enabled.
    void setStartsDisabled(bool startsDisabled) { startsDisabled_ = startsDisabled; }

    [[nodiscard]] bool exists() const { return receiver_ != nullptr; }

    [[nodiscard]] std::uint64_t mask() const { return mask_; }

    [[nodiscard]] int startCount() const { return startCount_; }

    [[nodiscard]] int enableCount() const { return enableCount_; }

    [[nodiscard]] const std::set<core::KeyCode>& replaceableKeys() const { return replaceableKeys_; }

    Journal* journal = nullptr; ///< none: nothing is recorded

private:
    void receive(InputEvent& event);
    [[nodiscard]] bool holdsBack(const InputEvent& event) const;

    Receiver receiver_;
    std::uint64_t mask_ = 0;
    std::set<core::KeyCode> replaceableKeys_;
    std::function<bool()> permitted_ = [] { return true; };
    std::function<bool()> hidden_ = [] { return false; };
    std::function<void(const InputEvent&)> onLetGo_ = [](const InputEvent&) {};
    std::vector<InputEvent> held_;
    bool holding_ = false;
    bool startsDisabled_ = false;
    bool enabled_ = false;
    bool receiving_ = false;
    int startCount_ = 0;
    int enableCount_ = 0;
};

} // namespace quillane::fakes
