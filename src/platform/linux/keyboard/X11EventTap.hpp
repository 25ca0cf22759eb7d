// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/EventTap.hpp"
#include "platform/InputSources.hpp"
#include "platform/MainQueue.hpp"
#include "platform/linux/keyboard/X11KeyRewriter.hpp"
#include "platform/linux/keyboard/X11Session.hpp"
#include "platform/linux/keyboard/X11TapWatchdog.hpp"

namespace quillane {

/// The event tap on X11. It observes the raw events of all devices, which no grab can block, and reports itself as
/// disabled when the connection is lost, when the server does not answer, or when it misses keys.
class X11EventTap final : public EventTap {
public:
    X11EventTap(const X11Session& session, InputSources& sources, MainQueue& mainQueue);
    ~X11EventTap() override;

    [[nodiscard]] bool start(std::uint64_t mask, Receiver receiver) override;
    void stop() override;
    void enable() override;

    [[nodiscard]] bool isEnabled() const override { return state_ == State::running; }

    void setReplaceableKeys(std::span<const core::KeyCode> keys) override;
    void hold() override;

    void letGo() override { rewriter_.letGo(); }

    [[nodiscard]] bool isHolding() const override { return rewriter_.isHolding(); }

private:
    enum class State {
        stopped,
        running,
        disabled,   ///< reported as such; waits for `enable`
        recovering, ///< waits for the server to answer
    };

    void disable();
    void recover();
    void handleKey(const X11RawEvent& event);
    void handleButton(const X11RawEvent& event);
    void updateReplacing();
    [[nodiscard]] InputEvent translated(const X11RawEvent& event) const;
    InputEvent deliver(InputEvent event);

    X11Connection& connection_;
    X11RawInput& input_;
    X11Keyboard& keyboard_;
    const InputSources& sources_;
    X11KeyRewriter rewriter_;
    X11TapWatchdog watchdog_;
    std::vector<xcb_keycode_t> replaceableKeys_;
    State state_ = State::stopped;
    std::uint64_t mask_ = 0;
    Receiver receiver_;
    core::Subscription keys_;
    core::Subscription buttons_;
    core::Subscription capsLock_;
    core::Subscription losses_;
    core::Subscription sourceChanges_;
};

} // namespace quillane
