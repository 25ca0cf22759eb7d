// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/WritingDirection.hpp"
#include "direction/DirectionServices.hpp"
#include "direction/NativeDirectionAdapter.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace quillane {

/// Sets the direction of the paragraph at the cursor in Microsoft Outlook: in a message body through the buttons of the
/// formatting toolbar, opening its overflow popover if the window is too narrow for them; in the subject line through
/// the context menu.
class OutlookAdapter {
public:
    OutlookAdapter(DirectionServices services, const DirectionReport& report);

    OutlookAdapter(const OutlookAdapter&) = delete;
    OutlookAdapter& operator=(const OutlookAdapter&) = delete;

    /// Starts an attempt; Outlook must be in front.
    void apply(core::WritingDirection direction);

    /// Abandons the current attempt. One that waits for the popover reports that in its next step.
    void cancelPending();

    /// The same for a key, click or scroll of the user, which may take over the subject line's menu.
    void interrupt(core::UserInput input);

private:
    struct Attempt {
        AXElement application;
        AXElement editor;
        pid_t pid;
        core::WritingDirection direction;
        std::int64_t operation = 0; ///< of a wait for the popover
    };

    void cancelPopover();
    void applyInBody(const Attempt& attempt);
    [[nodiscard]] bool isComposeEditor(const AXElement& element) const;
    [[nodiscard]] std::optional<AXElement> directionButton(const AXElement& in, core::WritingDirection direction) const;
    [[nodiscard]] std::optional<AXElement> popover(const AXElement& application) const;
    void openOverflow(const AXElement& toolbar, Attempt attempt);
    void schedule(const Attempt& attempt, int run);
    void pressOverflowButton(const Attempt& attempt, int run);
    void press(const AXElement& button, core::WritingDirection direction);

    DirectionServices services_;
    DirectionReport report_;
    NativeDirectionAdapter subject_;
    std::int64_t operation_ = 0; ///< a wait with another number has been taken over by the next chord
    bool overflowPending_ = false;
    bool cancelled_ = false;
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with pending steps
};

} // namespace quillane
