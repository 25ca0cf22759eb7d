// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "keyboard/MonitoredDesktop.hpp"

#include <gmock/gmock.h>

namespace quillane::testing {

/// A monitor with TextEdit in front.
class KeyboardMonitorTest : public ::testing::Test, protected MonitoredDesktop {
protected:
    KeyboardMonitorTest() { desktop.withFrontApplication("com.apple.TextEdit"); }

    void start() {
        ASSERT_TRUE(monitor->start());
        ASSERT_THAT(taken(), ::testing::IsEmpty());
    }

    void pressDirectionChord() { desktop.press(fakes::Modifier::leftControl).press(fakes::Modifier::rightShift); }

    void pressLanguageChord() { desktop.press(fakes::Modifier::leftOption).press(fakes::Modifier::leftShift); }

    void directionChord() {
        pressDirectionChord();
        desktop.releaseAll();
    }

    void languageChord() {
        pressLanguageChord();
        desktop.releaseAll();
    }
};

} // namespace quillane::testing
