// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "clipboard/ClipboardTest.hpp"

namespace quillane {
namespace {

class ClipboardInterestTest : public testing::ClipboardTest {};

TEST_F(ClipboardInterestTest, LastsWhileCopiesAreRecorded) {
    start();
    EXPECT_TRUE(pasteboard.interest());
    manager_->configure({.paused = true});
    EXPECT_FALSE(pasteboard.interest());
    manager_->configure({});
    EXPECT_TRUE(pasteboard.interest());
    setOption(&core::ClipboardOptions::enabled, false);
    EXPECT_FALSE(pasteboard.interest());
}

} // namespace
} // namespace quillane
