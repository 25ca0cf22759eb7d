// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/RunLoop.hpp"

#include "standins/macos/Mac.hpp"

#include <gtest/gtest.h>

#include <utility>

namespace quillane::standin {

void RunLoop::add(RunLoopSource& source, const std::string& mode) {
    const std::lock_guard lock(mutex_);
    if (source.isValid) {
        sources_.insert_or_assign({mode, &source}, CFRef<CFTypeRef>::retain(reference<CFTypeRef>(source)));
    }
}

void RunLoop::remove(RunLoopSource& source, const std::string& mode) {
    const std::lock_guard lock(mutex_);
    sources_.erase({mode, &source});
}

void RunLoop::remove(RunLoopSource& source) {
    const std::lock_guard lock(mutex_);
    std::erase_if(sources_, [&](const auto& entry) { return entry.first.second == &source; });
}

bool RunLoop::serves(const RunLoopSource& source, const std::string& mode) const {
    const std::lock_guard lock(mutex_);
    return source.isValid && sources_.contains({mode, const_cast<RunLoopSource*>(&source)});
}

CFRunLoopRunResult RunLoop::run(const std::string& mode) {
    isStopped_ = false;
    bool hasSource = false;
    const auto sources = [this] { // what is called may remove some
        const std::lock_guard lock(mutex_);
        return sources_;
    }();
    for (const auto& [key, held] : sources) {
        if (key.first == mode && serves(*key.second, mode)) {
            hasSource = true;
            if (const auto perform = std::exchange(key.second->perform, nullptr)) {
                perform();
            }
        }
    }
    return !hasSource ? kCFRunLoopRunFinished : isStopped_ ? kCFRunLoopRunStopped : kCFRunLoopRunTimedOut;
}

std::size_t RunLoop::clear() {
    const std::lock_guard lock(mutex_);
    const auto count = sources_.size();
    sources_.clear();
    return count;
}

RunLoop& RunLoops::of(std::thread::id thread) {
    const std::lock_guard lock(mutex_);
    auto& loop = loops_[thread];
    if (!loop) {
        loop = std::make_unique<RunLoop>();
    }
    return *loop;
}

void RunLoops::removeEverywhere(RunLoopSource& source) {
    const std::lock_guard lock(mutex_);
    for (const auto& [thread, loop] : loops_) {
        loop->remove(source);
    }
}

void RunLoops::settle() {
    for (const auto& [thread, loop] : loops_) {
        EXPECT_EQ(loop->clear(), 0U) << "a source is left in a run loop";
    }
}

} // namespace quillane::standin

using namespace quillane;
using standin::Mac;
using standin::RunLoopSource;

namespace {

standin::RunLoop& loopOf(CFRunLoopRef loop) {
    return standin::as<standin::RunLoop>(loop);
}

} // namespace

extern "C" {

const CFRunLoopMode kCFRunLoopCommonModes = CFSTR("kCFRunLoopCommonModes");

CFRunLoopRef CFRunLoopGetMain() {
    return standin::reference<CFRunLoopRef>(Mac::current().runLoops.main());
}

CFRunLoopRef CFRunLoopGetCurrent() {
    return standin::reference<CFRunLoopRef>(Mac::current().runLoops.current());
}

void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    loopOf(loop).add(standin::as<RunLoopSource>(source), standin::text(mode));
}

void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    loopOf(loop).remove(standin::as<RunLoopSource>(source), standin::text(mode));
}

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean /*returnAfterSource*/) {
    const auto result = Mac::current().runLoops.current().run(standin::text(mode));
    if (result == kCFRunLoopRunTimedOut) {
        Mac::current().pass(std::chrono::duration<double>(seconds));
    }
    return result;
}

void CFRunLoopStop(CFRunLoopRef loop) {
    loopOf(loop).stop();
}

void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source) {
    auto& exact = standin::as<RunLoopSource>(source);
    exact.isValid = false;
    Mac::current().runLoops.removeEverywhere(exact);
}
}
