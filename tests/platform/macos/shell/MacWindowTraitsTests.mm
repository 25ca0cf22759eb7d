// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/shell/MacWindowTraits.hpp"

#include "contracts/WindowTraitsContract.hpp"
#include "platform/macos/MacTestWindow.hpp"
#include "platform/macos/shell/MacKeyPress.hpp"

namespace quillane {
namespace {

class MacWindowTraitsDriver : public testing::MacWindowDriver {
public:
    WindowTraits& traits() { return traits_; }

    void showInFront(QWidget& window) { show(window); }

    static void typeLetter() { [NSApp sendEvent:testing::keyPress(@"v", 0, 9)]; }

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
    for (const auto& [kind, style] : {std::pair(PanelKind::card, 128UL), std::pair(PanelKind::search, 32897UL),
                                      std::pair(PanelKind::sign, 128UL)}) {
        ASSERT_TRUE(openPanel(kind));
        EXPECT_EQ(nativePanel().styleMask, style);
        EXPECT_EQ(nativePanel().level, 3);
        EXPECT_EQ(nativePanel().collectionBehavior, 258UL);
        EXPECT_FALSE(nativePanel().hidesOnDeactivate);
        EXPECT_EQ(nativePanel().ignoresMouseEvents, kind == PanelKind::sign);
    }
}

TEST_F(MacWindowTraitsTest, WhatKeepsAClickFromActivatingIsThere) {
    EXPECT_TRUE([NSPanel instancesRespondToSelector:NSSelectorFromString(@"_setPreventsActivation:")]);
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, WindowTraitsContract, MacWindowTraitsDriver);
} // namespace testing
} // namespace quillane
