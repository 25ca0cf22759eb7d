// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/shell/MacApplicationMenu.hpp"
#include "platform/macos/shell/MacWindowTraits.hpp"

#include "contracts/ApplicationMenuContract.hpp"
#include "contracts/WindowTraitsContract.hpp"
#include "platform/macos/MacTestWindow.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

namespace quillane {
namespace {

/// A press as AppKit hands it to the window that has the keys.
NSEvent* keyPress(NSString* characters, NSEventModifierFlags modifiers, unsigned short keyCode) {
    return [NSEvent keyEventWithType:NSEventTypeKeyDown
                            location:NSZeroPoint
                       modifierFlags:modifiers
                           timestamp:NSProcessInfo.processInfo.systemUptime
                        windowNumber:NSApp.keyWindow.windowNumber
                             context:nil
                          characters:characters
         charactersIgnoringModifiers:characters
                           isARepeat:NO
                             keyCode:keyCode];
}

class MacApplicationMenuDriver : public testing::MacWindowDriver {
public:
    std::unique_ptr<ApplicationMenu>& menu() { return menu_; }

    static void press(char key) {
        NSString* characters = nsString(std::string_view(&key, 1));
        [NSApp.mainMenu performKeyEquivalent:keyPress(characters, NSEventModifierFlagCommand, 0)];
    }

    [[nodiscard]] bool isWindowOpen() const { return window_.isVisible(); }

    [[nodiscard]] static LayoutDirection direction() {
        return NSApp.mainMenu.userInterfaceLayoutDirection == NSUserInterfaceLayoutDirectionRightToLeft
                   ? LayoutDirection::rightToLeft
                   : LayoutDirection::leftToRight;
    }

private:
    std::unique_ptr<ApplicationMenu> menu_ = std::make_unique<MacApplicationMenu>();
};

class MacWindowTraitsDriver : public testing::MacWindowDriver {
public:
    WindowTraits& traits() { return traits_; }

    void showInFront(QWidget& window) { show(window); }

    static void typeLetter() { [NSApp sendEvent:keyPress(@"v", 0, 9)]; }

private:
    MacWindowTraits traits_;
    testing::MacInputSource ascii_;
};

class MacWindowTraitsTest : public testing::WindowTraitsContract<MacWindowTraitsDriver> {
protected:
    [[nodiscard]] NSWindow* nativePanel() { return ((__bridge NSView*)reinterpret_cast<void*>(panel->winId())).window; }
};

TEST_F(MacWindowTraitsTest, ThePolicyIsTheApplications) {
    driver.traits().setActivationPolicy(ActivationPolicy::accessory);
    EXPECT_EQ(NSApp.activationPolicy, NSApplicationActivationPolicyAccessory);
    driver.traits().setActivationPolicy(ActivationPolicy::regular);
    EXPECT_EQ(NSApp.activationPolicy, NSApplicationActivationPolicyRegular);
}

TEST_F(MacWindowTraitsTest, PanelsFloatAndGoWhereTheUserGoes) {
    for (const auto& [kind, style] : {std::pair(PanelKind::card, 128UL), std::pair(PanelKind::search, 32897UL)}) {
        ASSERT_TRUE(openPanel(kind));
        EXPECT_EQ(nativePanel().styleMask, style);
        EXPECT_EQ(nativePanel().level, 3);
        EXPECT_EQ(nativePanel().collectionBehavior, 258UL);
        EXPECT_FALSE(nativePanel().hidesOnDeactivate);
    }
}

TEST_F(MacWindowTraitsTest, WhatKeepsAClickFromActivatingIsThere) {
    EXPECT_TRUE([NSPanel instancesRespondToSelector:NSSelectorFromString(@"_setPreventsActivation:")]);
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ApplicationMenuContract, MacApplicationMenuDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, WindowTraitsContract, MacWindowTraitsDriver);
} // namespace testing
} // namespace quillane
