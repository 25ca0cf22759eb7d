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

/// Turns the paragraph at the cursor in applications whose text views have a direction submenu in their context menu:
/// opens that menu by Accessibility, waits for it, and presses the item of the paragraph section. No key is sent and no
/// text changed. Every way that ends without a direction closes the menu again,
/// within ten seconds where the application does not answer.
///
/// A browser of the Chromium family without a focused element is woken first: its accessibility tree may not be there.
///
/// Main thread. `apply` returns at once; an attempt takes 1.7 seconds at the longest.
class NativeDirectionAdapter {
public:
    NativeDirectionAdapter(DirectionServices services, DirectionReport report);

    NativeDirectionAdapter(const NativeDirectionAdapter&) = delete;
    NativeDirectionAdapter& operator=(const NativeDirectionAdapter&) = delete;

    /// Starts an attempt in the application, which must be in front. Ignored while another attempt runs.
    void apply(core::WritingDirection direction, core::SupportedApplication application);

    /// Gives up the attempt that runs, silently. A menu that is open already stays the user's.
    void cancelPending();

    /// Stops waiting for a menu to be told of; may be called at any time.
    void stopObservingMenu();

private:
    /// What was asked for.
    struct Request {
        pid_t pid;
        core::SupportedApplication application;
        core::WritingDirection direction;
    };

    /// What the steps of one attempt hand on.
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
    std::int64_t operation_ = 0; ///< a step whose number is another one is stale
    bool pending_ = false;       ///< from waking a browser or asking for the menu to the end of the attempt
    std::optional<core::Subscription> observation_;
    std::optional<AXElement> capturedMenu_; ///< the menu that was told to have opened during this attempt
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with steps that are on their way
};

} // namespace quillane
