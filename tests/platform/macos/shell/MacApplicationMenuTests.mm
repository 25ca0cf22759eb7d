// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/shell/MacApplicationMenu.hpp"

#include "contracts/ApplicationMenuContract.hpp"
#include "platform/macos/MacTestWindow.hpp"
#include "platform/macos/foundation/MacStrings.hpp"
#include "platform/macos/shell/MacKeyPress.hpp"

namespace quillane {
namespace {

class MacApplicationMenuDriver : public testing::MacWindowDriver {
public:
    std::unique_ptr<ApplicationMenu>& menu() { return menu_; }

    static void press(char key) {
        NSString* characters = nsString(std::string_view(&key, 1));
        [NSApp.mainMenu performKeyEquivalent:testing::keyPress(characters, NSEventModifierFlagCommand, 0)];
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

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ApplicationMenuContract, MacApplicationMenuDriver);
} // namespace testing
} // namespace quillane
