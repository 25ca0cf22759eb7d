// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"
#include "core/direction/WritingDirection.hpp"
#include "direction/DirectionServices.hpp"
#include "direction/SelectionSnapshot.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace quillane {

/// Sets the direction of the paragraph at the cursor in applications whose text views have a direction submenu in their
/// context menu: opens that menu through Accessibility, waits for it, and presses the item of the paragraph section.
/// Sends no key and changes no text. An attempt that fails closes the menu again, within ten seconds if the application
/// does not answer.
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

    /// Abandons the current attempt, silently. A menu that is already open stays open for the user.
    void cancelPending();

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
    void refuse(const AXElement& menu, const Attempt& attempt, const core::LocalizedText& reason);
    void close(const AXElement& menu, const Attempt& attempt, int run);
    [[nodiscard]] bool answers(const AXElement& application) const;
    void recordDiagnostic(const Attempt& attempt);

    DirectionServices services_;
    DirectionReport report_;
    std::int64_t operation_ = 0; ///< a step with another number is stale
    bool pending_ = false;       ///< from waking a browser or asking for the menu to the end of the attempt
    std::optional<core::Subscription> observation_;
    std::optional<AXElement> capturedMenu_;                 ///< the menu that was announced during this attempt
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with pending steps
};

} // namespace quillane
