// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/UserInput.hpp"
#include "core/support/Lifetime.hpp"
#include "direction/ContextMenus.hpp"
#include "direction/DirectionAdapter.hpp"
#include "direction/DirectionServices.hpp"
#include "direction/SelectionSnapshot.hpp"
#include "direction/TypingHold.hpp"

#include <cstdint>
#include <memory>
#include <optional>

namespace quillane {

/// Sets the direction of the paragraph at the cursor in applications whose text views have a direction submenu in their
/// context menu: opens that menu through Accessibility, waits for it, and presses the item of the paragraph section.
/// Sends no key and changes no text. An attempt that fails or is cancelled closes the menu again, also one that opens
/// within the next ten seconds, unless the user has touched it. What the user types meanwhile goes to the text.
///
/// A browser of the Chromium family without a focused element is woken first: its accessibility tree may not exist yet.
///
/// Main thread. `apply` returns at once; an attempt takes at most 1.7 seconds.
class NativeDirectionAdapter final : public DirectionAdapter {
public:
    NativeDirectionAdapter(DirectionServices services, DirectionReport report);

    /// Ignored while another attempt runs.
    void apply(core::WritingDirection direction, const core::SupportedApplication& application) override;

    /// Abandons the current attempt, silently, and closes its menu.
    void cancelPending() override;

    /// A menu that the input reaches is the user's, except that typing goes on in the text: such keys were not meant
    /// for the menu.
    void interrupt(core::UserInput input) override;

    /// Stops waiting for the menu's notification; may be called at any time.
    void stopObservingMenu();

private:
    /// What was asked for.
    struct Request {
        pid_t pid;
        const core::SupportedApplication& application;
        core::WritingDirection direction;
    };

    /// The state that the steps of one attempt share.
    struct Attempt {
        AXElement application;
        AXElement editor;
        SelectionSnapshot selection;
        const core::SupportedApplication& browser;
        pid_t pid;
        const core::DirectionLabels& labels;
        core::WritingDirection direction;
        std::int64_t operation;
    };

    void begin(const Request& request, int wakings);
    void wake(const Request& request, int wakings);
    void observeMenu(const AXElement& application);
    [[nodiscard]] std::optional<AXElement> contextMenu(const AXElement& application) const;
    [[nodiscard]] bool isMenuGone(pid_t pid) const;
    void scheduleChoice(const Attempt& attempt, int run);
    void chooseDirection(const Attempt& attempt, int run);
    [[nodiscard]] std::optional<AXElement> paragraphCommand(const AXElement& menu, const Attempt& attempt) const;
    [[nodiscard]] std::optional<core::LocalizedText> obstacle(const AXElement& menu, const Attempt& attempt) const;
    void pressCommand(const AXElement& command, const AXElement& menu, const Attempt& attempt);
    void finish();
    void abandonMenu();
    void refuse(const AXElement& menu, const Attempt& attempt, const core::LocalizedText& reason);
    void closeMenu(const std::optional<AXElement>& menu, const Attempt& attempt);
    void recordDiagnostic(const Attempt& attempt);

    DirectionServices services_;
    DirectionReport report_;
    std::int64_t operation_ = 0; ///< a step with another number is stale
    bool pending_ = false;       ///< from waking a browser or asking for the menu to the end of the attempt
    std::optional<core::Subscription> observation_;
    std::optional<AXElement> capturedMenu_; ///< the menu that was announced during this attempt
    std::optional<Attempt> requested_;      ///< the attempt that has asked for a menu and not ended
    std::optional<AXElement> lastMenu_;     ///< that an attempt has found
    AbandonedMenu abandonedMenu_;
    TypingHold typing_;
    core::Lifetime lifetime_;
};

} // namespace quillane
