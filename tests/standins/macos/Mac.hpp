// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "standins/macos/Accessibility.hpp"
#include "standins/macos/HotKeys.hpp"
#include "standins/macos/InputSources.hpp"
#include "standins/macos/Keyboard.hpp"
#include "standins/macos/Keychain.hpp"
#include "standins/macos/NotificationCenter.hpp"
#include "standins/macos/Object.hpp"
#include "standins/macos/Power.hpp"
#include "standins/macos/Proxies.hpp"
#include "standins/macos/RunLoop.hpp"
#include "standins/macos/Windows.hpp"

#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace quillane::standin {

/// One simulated Mac, which the functions of the stand-ins act on while it exists. One at a time: a test makes it, and
/// what is tested goes before it. Its end fails the test for whatever has not been given back.
class Mac {
public:
    Mac();
    ~Mac();
    Mac(const Mac&) = delete;
    Mac& operator=(const Mac&) = delete;

    [[nodiscard]] static Mac& current();

    using Clock = std::chrono::steady_clock;

    /// Simulated time, which passes only when somebody waits.
    [[nodiscard]] Clock::time_point now() const;
    void pass(std::chrono::duration<double> time);

    /// Runs what the main queue has to do, once.
    void turn();

    /// Lets the main queue run until the condition holds; false when nothing is left to run.
    bool waitUntil(const std::function<bool()>& condition);

    void post(std::function<void()> work); ///< on the main queue

    Ledger objects; // first: everything else holds some
    RunLoops runLoops;
    NotificationCenter notifications;
    AccessibilityServer accessibility;
    Keyboard keyboard;
    InputSourceList inputSources;
    HotKeyRegistry hotKeys;
    Keychain keychain;
    PowerManagement power;
    Proxies proxies;
    WindowServer windows;
    std::vector<std::string> openedAddresses;
    bool opensAddresses = true;
    std::vector<std::string> log; ///< formats of errors
    int activities = 0;           ///< that keep the program awake now

private:
    mutable std::mutex mutex_;
    Clock::time_point now_ = Clock::now();
    std::deque<std::function<void()>> queue_;
};

} // namespace quillane::standin
