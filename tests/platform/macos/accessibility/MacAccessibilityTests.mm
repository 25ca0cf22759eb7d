// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/accessibility/MacAccessibility.hpp"

#include "contracts/AccessibilityContract.hpp"
#include "platform/macos/MacDriver.hpp"
#include "platform/macos/MacForm.hpp"
#include "platform/macos/MacTestUser.hpp"

namespace quillane {
namespace {

class MacAccessibilityDriver : public testing::MacDriver {
public:
    [[nodiscard]] static std::string lacking() {
        return AXIsProcessTrusted() ? "" : "the program that runs the tests has no Accessibility permission";
    }

    Accessibility& accessibility() { return accessibility_; }

    [[nodiscard]] pid_t pid() const { return form_.pid(); }

    void focusTextField() {
        moveTo(false);
        if (!typed_) {
            for (core::KeyCode letter = 0; letter < 3; ++letter) {
                user_.tap(letter);
            }
            typed_ = true;
            EXPECT_TRUE(waitUntil([&] { return text().size() >= 3; }));
        }
    }

    void focusPasswordField() { moveTo(true); }

    /// Clicks the middle of the focused field with the right button.
    void openContextMenu() {
        const auto position = structure(kAXPositionAttribute);
        const auto size = structure(kAXSizeAttribute);
        CGPoint corner{};
        CGSize extent{};
        ASSERT_TRUE(position && AXValueGetValue(position.get(), kAXValueTypeCGPoint, &corner));
        ASSERT_TRUE(size && AXValueGetValue(size.get(), kAXValueTypeCGSize, &extent));
        user_.click(CGPointMake(corner.x + extent.width / 2, corner.y + extent.height / 2), kCGMouseButtonRight);
    }

    void stopAnswering() { form_.stop(); }

private:
    [[nodiscard]] std::optional<AXElement> focused() {
        const auto value = accessibility_.attribute(accessibility_.application(pid()), "AXFocusedUIElement");
        const auto* element = value ? std::get_if<AXElement>(&*value) : nullptr;
        return element ? std::optional(*element) : std::nullopt;
    }

    [[nodiscard]] std::string text(std::string_view attribute = "AXValue") {
        const auto element = focused();
        const auto value = element ? accessibility_.attribute(*element, attribute) : std::nullopt;
        const auto* text = value ? std::get_if<std::string>(&*value) : nullptr;
        return text ? *text : std::string();
    }

    /// Goes from field to field with Tab until one that can be edited has the focus.
    void moveTo(bool password) {
        for (int i = 0; i < 3; ++i) {
            ASSERT_TRUE(waitUntil([&] { return focused().has_value(); }));
            if ((text("AXSubrole") == "AXSecureTextField") == password &&
                accessibility_.isAttributeSettable(*focused(), "AXValue")) {
                return;
            }
            const auto before = focused();
            user_.tap(tabKey);
            ASSERT_TRUE(waitUntil([&] { return focused() != before; }));
        }
        FAIL() << "no such field";
    }

    /// A structure of the focused field, read directly because the interface does not need it.
    [[nodiscard]] CFRef<AXValueRef> structure(CFStringRef name) const {
        const auto application = CFRef<AXUIElementRef>::adopt(AXUIElementCreateApplication(pid()));
        CFTypeRef element = nullptr;
        AXUIElementCopyAttributeValue(application.get(), kAXFocusedUIElementAttribute, &element);
        const auto field = CFRef<CFTypeRef>::adopt(element);
        const auto reference = cfCast<AXUIElementRef>(field.get(), AXUIElementGetTypeID());
        CFTypeRef value = nullptr;
        if (reference) {
            AXUIElementCopyAttributeValue(reference, name, &value);
        }
        const auto owned = CFRef<CFTypeRef>::adopt(value);
        return CFRef<AXValueRef>::retain(cfCast<AXValueRef>(owned.get(), AXValueGetTypeID()));
    }

    static constexpr core::KeyCode tabKey = 48;

    testing::MacForm form_;
    MacAccessibility accessibility_;
    testing::MacTestUser user_;
    bool typed_ = false;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, AccessibilityContract, MacAccessibilityDriver);
} // namespace testing
} // namespace quillane
