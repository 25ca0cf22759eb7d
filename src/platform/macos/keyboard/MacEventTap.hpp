// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/EventTap.hpp"

#include <memory>

namespace quillane {

/// An active event tap of the login session (Quartz Event Services, CGEventTapCreate) on the main run loop.
class MacEventTap final : public EventTap {
public:
    MacEventTap();
    ~MacEventTap() override;

    /// Creates the tap ahead of all others of the session, and replaces an earlier one of this object.
    [[nodiscard]] bool start(std::uint64_t mask, Receiver receiver) override;
    void stop() override;
    void enable() override;
    [[nodiscard]] bool isEnabled() const override;

    /// Does nothing: an active tap may rewrite any event that passes, so no key must be held back.
    void setReplaceableKeys(std::span<const core::KeyCode> keys) override;

    /// Takes the presses that are held back out of the stream, with their releases, and posts them again when it lets
    /// go, also when it is stopped.
    void hold() override;
    void letGo() override;
    [[nodiscard]] bool isHolding() const override;

private:
    struct Tap;
    std::unique_ptr<Tap> tap_;
};

} // namespace quillane
