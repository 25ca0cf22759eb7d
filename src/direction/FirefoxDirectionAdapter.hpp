// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "direction/ContextMenus.hpp"
#include "direction/DirectionAdapter.hpp"
#include "direction/DirectionServices.hpp"

#include <cstdint>
#include <functional>
#include <optional>

namespace quillane {

/// Sets the direction of the editor with the cursor in Firefox, whose one command swaps it: reads first which way the
/// text runs, presses the command only when that differs, and looks again. An editable page is turned as a whole.
///
/// The command is an item of a menu in the menu bar, which may be hidden. Once that menu has been open, the item can be
/// pressed while it is closed; so the menu opens for the first chord in a window only.
///
/// Main thread. `apply` returns at once; an attempt takes at most three and a half seconds.
class FirefoxDirectionAdapter final : public DirectionAdapter {
public:
    FirefoxDirectionAdapter(DirectionServices services, DirectionReport report);

    /// Ignored while another attempt runs.
    void apply(core::WritingDirection direction, const core::SupportedApplication& application) override;

    /// Abandons the current attempt, silently, and closes its menu.
    void cancelPending() override;

    /// The same for a key, click or scroll of the user; see `AbandonedMenu`.
    void interrupt(core::UserInput input) override;

private:
    /// The state that the steps of one attempt share.
    struct Attempt {
        const core::SupportedApplication* browser;
        AXElement application;
        AXElement editor;
        pid_t pid;
        core::WritingDirection direction;
        std::int64_t operation;
        std::optional<AXElement> menu{}; ///< that was opened
        int run = 0;                     ///< of the current step
    };

    void readDirection(Attempt attempt);
    void findCommand(Attempt attempt);
    void awaitMenu(Attempt attempt);
    void press(Attempt attempt, const AXElement& command);
    void confirm(Attempt attempt);
    void again(Attempt attempt, void (FirefoxDirectionAdapter::*step)(Attempt));
    [[nodiscard]] std::optional<AXElement> menu(const Attempt& attempt) const;
    [[nodiscard]] std::optional<AXElement> command(const AXElement& menu, const Attempt& attempt) const;
    void closeMenu(const Attempt& attempt);
    void explain(const Attempt& attempt);
    void finish(const core::ChordOutcome& outcome);

    DirectionServices services_;
    DirectionReport report_;
    std::int64_t operation_ = 0;          ///< a step with another number is stale
    std::optional<Attempt> current_;      ///< until its end
    std::optional<pid_t> withoutCommand_; ///< the process whose command was found missing last
    AbandonedMenu abandonedMenu_;
    core::Lifetime lifetime_;
};

} // namespace quillane
