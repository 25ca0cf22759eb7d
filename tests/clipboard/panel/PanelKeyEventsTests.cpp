// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "clipboard/panel/PanelKeyEvents.hpp"

#include "support/OffscreenApplication.hpp"

#include <QKeyEvent>

#include <gtest/gtest.h>

#include <array>

namespace quillane {
namespace {

class PanelKeyEventsTest : public ::testing::Test {
    fakes::OffscreenApplication application_; // which the keyboard of an event belongs to
};

QKeyEvent onMac(int key, Qt::KeyboardModifiers modifiers, core::KeyCode keyCode) {
    return {QEvent::KeyPress, key, modifiers, 0, keyCode, 0};
}

QKeyEvent onX11(int key, Qt::KeyboardModifiers modifiers, quint32 scanCode) {
    return {QEvent::KeyPress, key, modifiers, scanCode, 0, 0};
}

TEST_F(PanelKeyEventsTest, MacDigitsAreKnownByPlaceOnEveryLayout) {
    constexpr std::array<core::KeyCode, 9> row{18, 19, 20, 21, 23, 22, 26, 28, 25};
    constexpr std::array<int, 9> french{'&', 0xc9, '"', '\'', '(', 0xa7, 0xc8, '!', 0xc7};
    for (std::size_t i = 0; i < row.size(); ++i) {
        const auto event = onMac(french.at(i), Qt::ControlModifier, row.at(i));
        EXPECT_EQ(panelKeyEvents::keyCode(event, KeyNumbering::macOS), row.at(i));
        EXPECT_EQ(panelKeyEvents::keyCode(event, KeyNumbering::x11), std::nullopt);
    }
    EXPECT_EQ(panelKeyEvents::keyCode(onMac('7', Qt::ControlModifier, 18), KeyNumbering::macOS), 18);
}

TEST_F(PanelKeyEventsTest, MacKeypadDigitsAreKnownByTheirText) {
    const auto event = onMac(Qt::Key_3, Qt::ControlModifier | Qt::KeypadModifier, 85);
    EXPECT_EQ(panelKeyEvents::keyCode(event, KeyNumbering::macOS), 20);
}

TEST_F(PanelKeyEventsTest, X11DigitsAreKnownByTextAndThenByPlace) {
    EXPECT_EQ(panelKeyEvents::keyCode(onX11('&', Qt::ControlModifier, 10), KeyNumbering::x11), 18);
    EXPECT_EQ(panelKeyEvents::keyCode(onX11('2', Qt::ControlModifier, 10), KeyNumbering::x11), 19);
    EXPECT_EQ(panelKeyEvents::keyCode(onX11('0', Qt::ControlModifier, 10), KeyNumbering::x11), std::nullopt);
}

TEST_F(PanelKeyEventsTest, OnlyCommandShiftVIsTheHotKeyOnMac) {
    const auto isHotKey = [](Qt::KeyboardModifiers modifiers, core::KeyCode keyCode) {
        return panelKeyEvents::isHotKey(onMac(Qt::Key_V, modifiers, keyCode), KeyNumbering::macOS);
    };
    EXPECT_TRUE(isHotKey(Qt::ControlModifier | Qt::ShiftModifier, 9));
    EXPECT_FALSE(isHotKey(Qt::MetaModifier | Qt::ShiftModifier, 9)); // Control
    EXPECT_FALSE(isHotKey(Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier, 9));
    EXPECT_FALSE(isHotKey(Qt::ControlModifier | Qt::ShiftModifier, 47)); // V of Dvorak
}

TEST_F(PanelKeyEventsTest, SuperShiftVIsTheHotKeyOnX11) {
    const auto super = Qt::MetaModifier | Qt::ShiftModifier;
    EXPECT_TRUE(panelKeyEvents::isHotKey(onX11(Qt::Key_V, super, 55), KeyNumbering::x11));
    EXPECT_TRUE(panelKeyEvents::isHotKey(onX11(0x5d4, super, 55), KeyNumbering::x11));
    EXPECT_FALSE(
        panelKeyEvents::isHotKey(onX11(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier, 55), KeyNumbering::x11));
}

} // namespace
} // namespace quillane
