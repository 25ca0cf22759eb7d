// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "direction/DirectionAdapter.hpp"
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
class OutlookAdapter final : public DirectionAdapter {
public:
    OutlookAdapter(DirectionServices services, const DirectionReport& report);

    void apply(core::WritingDirection direction, const core::SupportedApplication& outlook) override;

    /// Abandons the current attempt. One that waits for the popover reports that in its next step.
    void cancelPending() override;

    /// The same for a key, click or scroll of the user, which may take over the subject line's menu.
    void interrupt(core::UserInput input) override;

private:
    struct Attempt {
        AXElement application;
        AXElement editor;
        pid_t pid;
        core::WritingDirection direction;
        const core::DirectionLabels& labels;
        std::int64_t operation = 0; ///< of a wait for the popover
    };

    void cancelPopover();
    void applyInBody(const Attempt& attempt);
    [[nodiscard]] std::optional<AXElement> directionButton(const AXElement& in, const Attempt& attempt) const;
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
    core::Lifetime lifetime_;
};

} // namespace quillane
