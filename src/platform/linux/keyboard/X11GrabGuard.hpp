// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/keyboard/X11GuardProcess.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <cstdint>
#include <functional>
#include <memory>

namespace quillane {

/// Keeps a busy main thread from holding the keyboard of the desktop. While keys are grabbed, a thread watches for a
/// press that the server holds back. If the event loop does not turn within 300 ms, the thread lets the press through
/// and drops every grab of the connection, so that nothing is held back until the loop turns again. A second process
/// does the same, less gently, for a process that is stopped. Both sleep while no key is grabbed.
class X11GrabGuard {
public:
    /// `onLetGo` is called once the loop turns after the keyboard was let go: the grabs have to be made again.
    X11GrabGuard(X11Connection& connection, std::function<void()> onLetGo);
    ~X11GrabGuard();
    X11GrabGuard(const X11GrabGuard&) = delete;
    X11GrabGuard& operator=(const X11GrabGuard&) = delete;

    /// Keys of this master device are grabbed with XInput on the root window.
    void arm(std::uint16_t master);

    void disarm();

    /// False when the keyboard has been let go since: an event with this number (`full_sequence`) has nothing left to
    /// answer. Otherwise the caller answers it now, and the thread keeps its hands off.
    [[nodiscard]] bool mayAnswer(std::uint32_t sequence);

    /// True once after the keyboard was let go.
    [[nodiscard]] bool takeLetGo();

private:
    struct Shared;
    class Watcher;

    [[nodiscard]] xcb_window_t window();

    X11Connection& connection_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    X11GuardProcess process_;
    std::shared_ptr<Shared> shared_; ///< with the thread, which may wait for the server longer than this lives
    bool isArmed_ = false;
    bool hasThread_ = false;
    core::Subscription losses_;
};

} // namespace quillane
