// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/UserInput.hpp"
#include "core/support/Lifetime.hpp"
#include "core/support/Subscription.hpp"
#include "direction/DirectionServices.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace quillane {

/// The menu of the application that is open, the menus of its menu bar excepted.
[[nodiscard]] std::optional<AXElement> openContextMenu(Accessibility& accessibility, const AXElement& application);

/// Whether a menu is still open, as far as its application says.
[[nodiscard]] bool isOpen(Accessibility& accessibility, const AXElement& menu);

/// Whether the application answers at the moment.
[[nodiscard]] bool isAnswering(Accessibility& accessibility, const AXElement& application);

/// Closes the context menu of an attempt that has ended: one that is open already, and one that opens late, because
/// the application was busy. It is watched for ten seconds, and only closed while its application is in front. A menu
/// that the user has touched, or may have requested, is the user's.
///
/// Main thread. A step waits for the application as long as one attempt's does.
class AbandonedMenu {
public:
    /// The menu that was requested.
    struct Request {
        AXElement application;
        pid_t pid;
        /// Whether the menu is certainly the requested one, by its items.
        std::function<bool(const AXElement& menu)> isRecognized;
        /// Finds the menu while it is open, where it is not the context menu. Such a menu is not announced.
        std::function<std::optional<AXElement>()> find{};
    };

    explicit AbandonedMenu(DirectionServices services) : services_(services) {}

    AbandonedMenu(const AbandonedMenu&) = delete;
    AbandonedMenu& operator=(const AbandonedMenu&) = delete;

    /// Closes the menu, at once if it is known and can be reached. Replaces an earlier request.
    void close(Request request, const std::optional<AXElement>& menu);

    /// The user has pressed a key, clicked or scrolled.
    void note(core::UserInput input);

    /// Leaves every menu alone from now on.
    void forget();

    /// Whether no menu is waited for, and the last one that was closed is gone.
    [[nodiscard]] bool isDone() const;

private:
    struct Watch {
        Request request;
        std::optional<AXElement> menu; ///< seen, but not closed yet
        bool mayBeAnother = false;     ///< the user may have opened a menu of another kind
    };

    void closeSoon();
    void schedule(int run);
    void step(int run);
    void tryToClose(bool looks);

    DirectionServices services_;
    std::optional<Watch> watch_;
    std::optional<AXElement> closed_; ///< the last menu, which may take a moment to close
    std::int64_t number_ = 0;         ///< of the watch: a step with another number is stale
    std::optional<core::Subscription> observation_;
    core::Lifetime lifetime_;
};

} // namespace quillane
