// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/macos/foundation/CFRef.hpp"
#include "standins/macos/Object.hpp"
#include "standins/macos/Strings.hpp"

#include <CoreFoundation/CoreFoundation.h>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

namespace quillane::standin {

/// A source of a run loop: what it has to do when the loop runs in a mode that it was added to.
class RunLoopSource final : public Object {
public:
    explicit RunLoopSource(std::string what, Owner owner = Owner::caller) : Object(owner), what_(std::move(what)) {}

    [[nodiscard]] CFTypeID type() const override { return 20; }

    [[nodiscard]] std::string describe() const override { return "a run-loop source of " + what_; }

    std::function<void()> perform; ///< once
    bool isValid = true;

private:
    std::string what_;
};

/// The run loop of one thread.
class RunLoop final : public Object {
public:
    RunLoop() : Object(Owner::nobody) {}

    [[nodiscard]] CFTypeID type() const override { return 21; }

    [[nodiscard]] std::string describe() const override { return "a run loop"; }

    void add(RunLoopSource& source, const std::string& mode);
    void remove(RunLoopSource& source, const std::string& mode);
    void remove(RunLoopSource& source);

    /// Whether the loop would call the source in the mode.
    [[nodiscard]] bool serves(const RunLoopSource& source, const std::string& mode) const;

    /// What the sources of the mode have to do; how it ended.
    CFRunLoopRunResult run(const std::string& mode);

    void stop() { isStopped_ = true; }

    /// Takes every source out; how many there were.
    std::size_t clear();

private:
    using Sources = std::map<std::pair<std::string, RunLoopSource*>, CFRef<CFTypeRef>>;

    mutable std::mutex mutex_;
    Sources sources_;
    std::atomic<bool> isStopped_ = false;
};

/// The run loops of all threads. The main one is that of the thread that has made this.
class RunLoops {
public:
    [[nodiscard]] RunLoop& main() { return of(main_); }

    [[nodiscard]] RunLoop& current() { return of(std::this_thread::get_id()); }

    [[nodiscard]] bool isMainThread() const { return std::this_thread::get_id() == main_; }

    /// Whether the main loop would call the source whatever the application shows.
    [[nodiscard]] bool servesAlways(const RunLoopSource& source) { return main().serves(source, commonModes); }

    void removeEverywhere(RunLoopSource& source);

    /// A failure of the test for sources that are left.
    void settle();

    static constexpr auto commonModes = "kCFRunLoopCommonModes";

private:
    [[nodiscard]] RunLoop& of(std::thread::id thread);

    std::mutex mutex_;
    std::thread::id main_ = std::this_thread::get_id();
    std::map<std::thread::id, std::unique_ptr<RunLoop>> loops_;
};

} // namespace quillane::standin
