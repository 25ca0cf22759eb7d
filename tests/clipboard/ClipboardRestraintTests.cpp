// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardTest.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Recording under what macOS puts in its way: contents that it keeps back, and timers that it holds back.
using ClipboardRestraintTest = testing::ClipboardTest;

TEST_F(ClipboardRestraintTest, CopyThatTheSystemDeniesIsNotRecordedAndTheNextOneIs) {
    start();
    pasteboard.setAccess(PasteboardAccess::denied);
    copy("denied");
    EXPECT_THAT(recorded(), IsEmpty());
    pasteboard.setAccess(PasteboardAccess::allowed);
    pass(2s);
    EXPECT_THAT(recorded(), IsEmpty());
    copy("allowed");
    EXPECT_THAT(recorded(), ElementsAre("allowed"));
}

TEST_F(ClipboardRestraintTest, UserIsAskedForAccessOncePerRecordedCopyAndForNoOther) {
    start();
    pasteboard.setAccess(PasteboardAccess::asked);
    copy("first");
    pass(5s);
    EXPECT_EQ(pasteboard.timesAsked(), 1);
    pasteboard.setAccess(PasteboardAccess::asked, false);
    copy("refused");
    pass(5s);
    EXPECT_EQ(pasteboard.timesAsked(), 2);
    EXPECT_THAT(recorded(), ElementsAre("first"));
    secureInput.setEnabled(true);
    copy("secret");
    secureInput.setEnabled(false);
    manager_->configure({.paused = true});
    copy("paused");
    manager_->configure({});
    pass(5s);
    EXPECT_EQ(pasteboard.timesAsked(), 2);
    EXPECT_TRUE(manager_->copy(manager_->history().entries().front().id, core::clipboardSnapshot::RestoreMode::full));
    pass(5s);
    EXPECT_EQ(pasteboard.timesAsked(), 2); // what the program has written itself
}

TEST_F(ClipboardRestraintTest, TimersThatFireLateRecordTheLastCopyAndWriteOnce) {
    start();
    queue.nap(10s);
    pasteboard.copyText("overwritten");
    pass(4s);
    pasteboard.copyText("last");
    pass(4s);
    EXPECT_THAT(recorded(), IsEmpty());
    pass(10s);
    EXPECT_THAT(recorded(), ElementsAre("last"));
    pass(10s);
    EXPECT_THAT(stored(), ElementsAre("last"));
    manager_->configure({.paused = true});
    pasteboard.copyText("paused");
    manager_->configure({});
    pass(20s);
    EXPECT_THAT(recorded(), ElementsAre("last"));
}

} // namespace
} // namespace quillane
