// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/WindowTraits.hpp"

#include <QLineEdit>
#include <QWidget>

#include <gtest/gtest.h>

#include <optional>

namespace quillane::testing {

/// What every WindowTraits promises. The driver is constructed for each test, with a Qt application, and has:
///
///     WindowTraits& traits();
///     void showInFront(QWidget&);              // an ordinary window, which has the keyboard afterwards
///     void typeLetter();                       // the user types the letter v
///     bool waitUntil(std::function<bool()>);   // lets the world go on; false when it takes too long
template <typename Driver>
class WindowTraitsContract : public ::testing::Test {
protected:
    /// A window with a text field.
    struct Window : QWidget {
        explicit Window(const QRect& frame) {
            setGeometry(frame);
            field.setGeometry(10, 10, 100, 30);
        }

        QLineEdit field{this};
    };

    void showFront() {
        driver.showInFront(front);
        front.field.setFocus();
    }

    /// Makes a new window a panel and opens it; false when it does not appear in its position, or does not get the
    /// keyboard.
    [[nodiscard]] bool openPanel(PanelKind kind) {
        panel.emplace(place);
        driver.traits().makePanel(*panel, kind);
        EXPECT_TRUE(panel->isHidden());
        panel->setGeometry(place);
        panel->show();
        panel->activateWindow(); // in vain for any but a search panel
        panel->field.setFocus();
        return driver.waitUntil([&] {
            return panel->isVisible() && panel->geometry() == place &&
                   (kind != PanelKind::search || panel->isActiveWindow());
        });
    }

    void expectKeyboardStays(PanelKind kind) {
        showFront();
        ASSERT_TRUE(openPanel(kind));
        letTimePass(); // a desktop gives the keyboard to a new window a moment after it appears
        driver.typeLetter();
        EXPECT_TRUE(driver.waitUntil([&] { return front.field.text() == "v"; }));
        EXPECT_EQ(panel->field.text(), "");
    }

    void letTimePass() {
        int turns = 0;
        EXPECT_TRUE(driver.waitUntil([&] { return ++turns > 20; }));
    }

    QRect place{120, 90, 200, 100}; ///< of the panel

    Driver driver;
    Window front{QRect{10, 10, 300, 200}};
    std::optional<Window> panel;
};

TYPED_TEST_SUITE_P(WindowTraitsContract);

TYPED_TEST_P(WindowTraitsContract, APanelIsWhereItIsPutAndHasNoTitle) {
    for (const auto kind : {PanelKind::card, PanelKind::search, PanelKind::sign}) {
        ASSERT_TRUE(this->openPanel(kind));
        EXPECT_EQ(this->panel->frameGeometry(), this->place);
    }
}

TYPED_TEST_P(WindowTraitsContract, ACardLeavesTheKeyboardWhereItIs) {
    this->expectKeyboardStays(PanelKind::card);
}

TYPED_TEST_P(WindowTraitsContract, ASignLeavesTheKeyboardWhereItIs) {
    this->expectKeyboardStays(PanelKind::sign);
}

TYPED_TEST_P(WindowTraitsContract, ASearchPanelHasTheKeyboardWhileItIsOpen) {
    this->showFront();
    ASSERT_TRUE(this->openPanel(PanelKind::search));
    this->driver.typeLetter();
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->panel->field.text() == "v"; }));
    EXPECT_EQ(this->front.field.text(), "");
    this->panel->hide();
    this->showFront();
    this->driver.typeLetter();
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->front.field.text() == "v"; }));
    EXPECT_EQ(this->panel->field.text(), "v");
}

TYPED_TEST_P(WindowTraitsContract, ThePolicyLeavesOpenWindowsOpen) {
    this->showFront();
    for (const auto policy : {ActivationPolicy::regular, ActivationPolicy::accessory, ActivationPolicy::regular}) {
        this->driver.traits().setActivationPolicy(policy);
        this->driver.traits().activateApplication();
        this->letTimePass();
        EXPECT_TRUE(this->front.isVisible());
    }
}

REGISTER_TYPED_TEST_SUITE_P(WindowTraitsContract, APanelIsWhereItIsPutAndHasNoTitle, ACardLeavesTheKeyboardWhereItIs,
                            ASignLeavesTheKeyboardWhereItIs, ASearchPanelHasTheKeyboardWhileItIsOpen,
                            ThePolicyLeavesOpenWindowsOpen);

} // namespace quillane::testing
