// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"
#include "core/direction/WritingDirection.hpp"
#include "core/keyboard/UserInput.hpp"
#include "direction/ContextMenus.hpp"
#include "direction/DirectionServices.hpp"
#include "direction/SelectionSnapshot.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace quillane {

/// Sets the direction of the paragraph at the cursor in applications whose text views have a direction submenu in their
/// context menu: opens that menu through Accessibility, waits for it, and presses the item of the paragraph section.
/// Sends no key and changes no text. An attempt that fails or is cancelled closes the menu again, also one that opens
/// within the next ten seconds, unless the user has touched it.
///
/// A browser of the Chromium family without a focused element is woken first: its accessibility tree may not exist yet.
///
/// Main thread. `apply` returns at once; an attempt takes at most 1.7 seconds.
class NativeDirectionAdapter {
public:
    NativeDirectionAdapter(DirectionServices services, DirectionReport report);

    NativeDirectionAdapter(const NativeDirectionAdapter&) = delete;
    NativeDirectionAdapter& operator=(const NativeDirectionAdapter&) = delete;

    /// Starts an attempt in the application, which must be in front. Ignored while another attempt runs.
    void apply(core::WritingDirection direction, core::SupportedApplication application);

    /// Abandons the current attempt, silently, and closes its menu.
    void cancelPending();

    /// The same for a key, click or scroll of the user. A menu that it reaches is the user's, except that typing goes
    /// on in the text: such keys were not meant for the menu.
    void interrupt(core::UserInput input);

    /// Stops waiting for the menu's notification; may be called at any time.
    void stopObservingMenu();

private:
    /// What was asked for.
    struct Request {
        pid_t pid;
        core::SupportedApplication application;
        core::WritingDirection direction;
    };

    /// The state that the steps of one attempt share.
    struct Attempt {
        AXElement application;
        AXElement editor;
        SelectionSnapshot selection;
        core::SupportedApplication browser;
        pid_t pid;
        std::string_view menuTitle;
        core::WritingDirection direction;
        std::int64_t operation;
    };

    void begin(const Request& request, int wakings);
    void wake(const Request& request, int wakings);
    void observeMenu(const AXElement& application);
    [[nodiscard]] std::optional<AXElement> contextMenu(const AXElement& application) const;
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
    AbandonedMenu abandonedMenu_;
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with pending steps
};

} // namespace quillane
