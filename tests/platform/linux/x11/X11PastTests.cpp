// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Past.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using ::testing::IsNull;
using ::testing::Pointee;

TEST(X11Past, HasTheValueOfEachTimeBeforeAChange) {
    X11Past<char> past;
    past.change(1'000, 'a');
    past.change(2'000, 'b');
    EXPECT_THAT(past.at(999), Pointee('a'));
    EXPECT_THAT(past.at(1'000), Pointee('b'));
    EXPECT_THAT(past.at(1'999), Pointee('b'));
    EXPECT_THAT(past.at(2'000), IsNull());
    EXPECT_THAT(past.at(3'000), IsNull());
}

TEST(X11Past, TimesWrapAround) {
    X11Past<char> past;
    past.change(5, 'a');
    EXPECT_THAT(past.at(0xffff'fff0), Pointee('a'));
    EXPECT_THAT(past.at(6), IsNull());
}

TEST(X11Past, ChangeOfLongAgoSaysNothingAboutThePresent) {
    X11Past<char> past;
    past.change(1'000, 'a');
    EXPECT_THAT(past.at(1'000U + 0x9000'0000U), IsNull()); // more than half way round
}

TEST(X11Past, KeepsTheLastChanges) {
    X11Past<int> past;
    for (int i = 1; i <= 100; ++i) {
        past.change(static_cast<xcb_timestamp_t>(10 * i), i);
    }
    EXPECT_THAT(past.at(999), Pointee(100));
    EXPECT_THAT(past.at(5), Pointee(100 - static_cast<int>(X11Past<int>::maximumChanges) + 1));
}

} // namespace
} // namespace quillane
