// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Mac.hpp"

#include "platform/macos/foundation/CFRef.hpp"
#include "platform/macos/foundation/MacAutoreleasePool.hpp"
#include "platform/macos/foundation/MacCallback.hpp"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

namespace quillane {
namespace {

// The stand-ins find what they are there for.

TEST(StandInMac, NamesWhatIsNeverReleased) {
    EXPECT_NONFATAL_FAILURE(
        {
            const standin::Mac mac;
            CFRetain(standin::string("kept").get());
        },
        "never released: the string \"kept\"");
}

TEST(StandInMac, NamesWhatIsReleasedTwice) {
    EXPECT_NONFATAL_FAILURE(
        {
            const standin::Mac mac;
            const auto number = standin::value(7).get(); // gone with the temporary
            CFRelease(number);
        },
        "used after its last release: the number 7");
}

TEST(StandInMac, NamesAReleaseOfWhatIsOnlyLent) {
    EXPECT_NONFATAL_FAILURE(
        {
            const standin::Mac mac;
            CFRelease(standin::reference<CFTypeRef>(
                standin::make<standin::RunLoopSource>("a lender", standin::Object::Owner::system)));
        },
        "released by somebody who does not own it: a run-loop source of a lender");
}

TEST(StandInMac, NamesWhatIsLeftBehind) {
    EXPECT_NONFATAL_FAILURE(
        {
            standin::Mac mac;
            EventHotKeyRef key = nullptr;
            RegisterEventHotKey(1, 2, {3, 4}, GetApplicationEventTarget(), 0, &key);
        },
        "a hot key is still registered");
}

TEST(StandInMac, NamesAListThatIsLeftWithWhatIsInIt) {
    EXPECT_NONFATAL_FAILURE(
        {
            const standin::Mac mac;
            CFRetain(standin::list({}).get());
        },
        "never released: a list");
}

TEST(StandInMac, RefusesNullAndOtherTypes) {
    const standin::Mac mac;
    const auto empty = standin::list({});
    EXPECT_NONFATAL_FAILURE(EXPECT_THROW(CFRetain(nullptr), std::logic_error), "called with null");
    EXPECT_NONFATAL_FAILURE(
        EXPECT_THROW(CFStringGetLength(reinterpret_cast<CFStringRef>(kCFBooleanTrue)), std::logic_error),
        "called with true");
    EXPECT_NONFATAL_FAILURE(
        EXPECT_THROW(static_cast<void>(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(empty.get()), 0)),
                     std::logic_error),
        "an index beyond the list");
}

TEST(StandInMac, OneAtATime) {
    EXPECT_NONFATAL_FAILURE(EXPECT_THROW(static_cast<void>(standin::Mac::current()), std::logic_error), "no Mac");
    const standin::Mac mac;
    EXPECT_NONFATAL_FAILURE(EXPECT_THROW(const standin::Mac second, std::logic_error), "a Mac already");
}

TEST(StandInAutoreleasePool, EndsFromTheInnermost) {
    const standin::Mac mac;
    const AutoreleasePool outer;
    std::optional<AutoreleasePool> inner(std::in_place);
    inner.reset();
    EXPECT_NONFATAL_FAILURE(
        {
            void* first = objc_autoreleasePoolPush();
            void* second = objc_autoreleasePoolPush();
            objc_autoreleasePoolPop(first);
            objc_autoreleasePoolPop(reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(second) - 1));
        },
        "innermost");
}

TEST(CFRef, CopiesShareAndMovesHandOver) {
    const standin::Mac mac;
    auto one = standin::string("shared");
    auto copy = one;
    EXPECT_EQ(copy.get(), one.get());
    const auto moved = std::move(one);
    EXPECT_FALSE(one); // NOLINT(bugprone-use-after-move): what is left is told
    copy = moved;
    copy = CFRef<CFStringRef>();
    EXPECT_FALSE(CFRef<CFStringRef>::retain(nullptr));
    EXPECT_EQ(cfCast<CFNumberRef>(moved.get(), CFNumberGetTypeID()), nullptr);
    EXPECT_EQ(cfCast<CFStringRef>(nullptr, CFStringGetTypeID()), nullptr);
}

TEST(Guarded, ExceptionsEndHereAndStayPrivate) {
    standin::Mac mac;
    guarded([] { throw std::runtime_error("what was typed"); });
    guarded([] { throw 1; });
    EXPECT_EQ(mac.log, (std::vector<std::string>{"a callback failed: %{private}s", "a callback failed"}));
}

} // namespace
} // namespace quillane
