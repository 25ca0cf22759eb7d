// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AreaCapture.hpp"

#include <gtest/gtest.h>

namespace quillane::testing {

/// What every AreaCapture that can start promises. The driver is constructed for each test and has:
///
///     AreaCapture& capture();
///     bool isSelecting();                      // the user can select now
///     void cancel();                           // the user cancels the selection
///     void keepKeyboard();                     // another program takes the keyboard for itself, for long
///     bool waitUntil(std::function<bool()>);   // lets the world go on; false when it takes too long
template <typename Driver>
class AreaCaptureContract : public ::testing::Test {
protected:
    [[nodiscard]] bool start() {
        return driver.capture().start(core::AppLanguage::english, [this] { ++keptOut; });
    }

    [[nodiscard]] bool waitUntilSelecting(bool selecting) {
        return driver.waitUntil([&] { return driver.isSelecting() == selecting; });
    }

    Driver driver;
    int keptOut = 0;
};

TYPED_TEST_SUITE_P(AreaCaptureContract);

TYPED_TEST_P(AreaCaptureContract, AStartLetsTheUserSelect) {
    EXPECT_FALSE(this->driver.isSelecting());
    ASSERT_TRUE(this->start());
    EXPECT_TRUE(this->waitUntilSelecting(true));
    EXPECT_EQ(this->keptOut, 0);
}

TYPED_TEST_P(AreaCaptureContract, ASecondStartGoesOnWithTheFirst) {
    ASSERT_TRUE(this->start());
    ASSERT_TRUE(this->start());
    ASSERT_TRUE(this->waitUntilSelecting(true));
    ASSERT_TRUE(this->start());
    this->driver.cancel();
    ASSERT_TRUE(this->waitUntilSelecting(false));
    EXPECT_FALSE(this->driver.waitUntil([&] { return this->driver.isSelecting(); }));
}

TYPED_TEST_P(AreaCaptureContract, AfterACancelledOneAnotherCanStart) {
    ASSERT_TRUE(this->start());
    ASSERT_TRUE(this->waitUntilSelecting(true));
    this->driver.cancel();
    ASSERT_TRUE(this->waitUntilSelecting(false));
    ASSERT_TRUE(this->start());
    EXPECT_TRUE(this->waitUntilSelecting(true));
    EXPECT_EQ(this->keptOut, 0);
}

TYPED_TEST_P(AreaCaptureContract, AProgramThatKeepsTheKeyboardIsReportedOnceAndAfterTheCall) {
    this->driver.keepKeyboard();
    ASSERT_TRUE(this->start());
    EXPECT_EQ(this->keptOut, 0);
    ASSERT_TRUE(this->driver.waitUntil([&] { return this->keptOut == 1; }));
    EXPECT_FALSE(this->driver.isSelecting());
}

TYPED_TEST_P(AreaCaptureContract, SettingsAreThoseOfASystemShortcut) {
    EXPECT_NE(this->driver.capture().means(), AreaCapture::Means::none);
    EXPECT_EQ(this->driver.capture().openShortcutSettings(),
              this->driver.capture().means() == AreaCapture::Means::systemShortcut);
}

REGISTER_TYPED_TEST_SUITE_P(AreaCaptureContract, AStartLetsTheUserSelect, ASecondStartGoesOnWithTheFirst,
                            AfterACancelledOneAnotherCanStart,
                            AProgramThatKeepsTheKeyboardIsReportedOnceAndAfterTheCall,
                            SettingsAreThoseOfASystemShortcut);

} // namespace quillane::testing
