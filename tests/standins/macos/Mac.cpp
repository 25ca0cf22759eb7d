// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Mac.hpp"

#include "platform/macos/foundation/MacActivity.hpp"

#include <ApplicationServices/ApplicationServices.h>
#include <dispatch/dispatch.h>
#include <gtest/gtest.h>
#include <os/log.h>

#include <cstdint>
#include <utility>

namespace quillane::standin {

namespace {

Mac* theMac = nullptr;
thread_local std::uintptr_t openPools = 0;

} // namespace

Mac::Mac() {
    if (theMac != nullptr) {
        refuse("there is a Mac already");
    }
    theMac = this;
}

Mac::~Mac() {
    queue_.clear();
    notifications.settle();
    keyboard.settle();
    hotKeys.settle();
    accessibility.settle();
    inputSources.settle();
    proxies.settle();
    keychain.settle();
    windows.settle();
    runLoops.settle();
    EXPECT_EQ(openPools, 0U) << "autorelease pools were left open";
    EXPECT_EQ(activities, 0) << "the program is kept awake";
    objects.settle();
    theMac = nullptr;
}

Mac& Mac::current() {
    if (theMac == nullptr) {
        refuse("there is no Mac");
    }
    return *theMac;
}

Mac::Clock::time_point Mac::now() const {
    const std::lock_guard lock(mutex_);
    return now_;
}

void Mac::pass(std::chrono::duration<double> time) {
    const std::lock_guard lock(mutex_);
    now_ += std::chrono::duration_cast<Clock::duration>(time);
}

void Mac::post(std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    queue_.push_back(std::move(work));
}

void Mac::turn() {
    const auto work = [this] {
        const std::lock_guard lock(mutex_);
        return std::exchange(queue_, {});
    }();
    for (const auto& task : work) {
        task();
        EXPECT_EQ(openPools, 0U) << "a callback has left an autorelease pool open";
    }
}

bool Mac::waitUntil(const std::function<bool()>& condition) {
    for (int turns = 0; turns < 100 && !condition(); ++turns) {
        turn();
    }
    return condition();
}

Ledger& ledger() {
    return Mac::current().objects;
}

} // namespace quillane::standin

using namespace quillane;
using standin::Mac;

namespace quillane {

/// The activity without NSProcessInfo.
MacActivity::MacActivity(const char* reason) : token_(reason) {
    ++Mac::current().activities;
}

MacActivity::~MacActivity() {
    --Mac::current().activities;
}

} // namespace quillane

void logErrorOfStandIn(const char* format) {
    Mac::current().log.emplace_back(format);
}

extern "C" {

void* objc_autoreleasePoolPush() {
    return reinterpret_cast<void*>(++standin::openPools);
}

void objc_autoreleasePoolPop(void* pool) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pool), standin::openPools) << "pools end from the innermost outwards";
    --standin::openPools;
}

dispatch_queue_t dispatch_get_main_queue() {
    return nullptr;
}

void dispatch_async_f(dispatch_queue_t /*queue*/, void* context, dispatch_function_t work) {
    Mac::current().post([context, work] { work(context); });
}

OSStatus LSOpenCFURLRef(CFURLRef address, CFURLRef* launched) {
    auto& mac = Mac::current();
    if (launched != nullptr) {
        standin::refuse("nobody wants to know what was launched");
    }
    if (!mac.opensAddresses) {
        return -10814; // kLSApplicationNotFoundErr
    }
    mac.openedAddresses.push_back(standin::text(CFURLGetString(address)));
    return noErr;
}
}
