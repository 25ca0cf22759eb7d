// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/AccessibilityContract.hpp"
#include "contracts/FakeDriver.hpp"
#include "fakes/FakeDesktop.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

using namespace fakes;

class FakeAccessibilityDriver : public testing::FakeDriver {
public:
    FakeAccessibilityDriver() {
        desktop_.withFrontApplication("com.apple.TextEdit");
        auto& window = tree().add("AXWindow");
        tree().with("AXFocusedWindow", window);
        field_ = &window.addTextField().with("AXWindow", window).saying(U"abc");
        field_->with("AXNumberOfCharacters", std::int64_t{3})
            .at({100, 50, 200, 20})
            .withText([](const AXTextRange& range) {
                return AXRect{104.0 + 8.0 * static_cast<double>(range.location), 52,
                              8.0 * static_cast<double>(range.length), 16};
            });
        password_ = &window.addTextField().with("AXSubrole", "AXSecureTextField");
        menu_ = &tree().add("AXMenu").present(false).withAction("AXCancel", [this] {
            menu_->present(false);
            return AXActionResult::done;
        });
        menu_->add("AXMenuItem");
        focusTextField();
    }

    Accessibility& accessibility() { return desktop_.accessibility; }

    [[nodiscard]] pid_t pid() const { return desktop_.frontPid(); }

    void focusTextField() { desktop_.accessibility.focus(pid(), field_); }

    void focusPasswordField() { desktop_.accessibility.focus(pid(), password_); }

    void openContextMenu() {
        menu_->present();
        desktop_.accessibility.notify(pid(), "AXMenuOpened", *menu_);
    }

    void stopAnswering() { desktop_.accessibility.stopAnswering(pid()); }

private:
    FakeElement& tree() { return desktop_.accessibility.tree(pid()); }

    FakeElement* field_ = nullptr;
    FakeElement* password_ = nullptr;
    FakeElement* menu_ = nullptr;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, AccessibilityContract, FakeAccessibilityDriver);
} // namespace testing
} // namespace quillane
