// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "contracts/Lacking.hpp"
#include "platform/Accessibility.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>
#include <string>

namespace quillane::testing {

/// What every Accessibility promises. The driver is constructed for each test, with an application in front that has a
/// text field with at least three letters and a password field, and has:
///
///     Accessibility& accessibility();
///     pid_t pid();                             // of the application
///     void focusTextField();
///     void focusPasswordField();
///     void openContextMenu();                  // of the focused element, as a user would: it has at least one item
///     void stopAnswering();                    // the application hangs from now on
///     bool waitUntil(std::function<bool()>);   // lets the world go on; false when it takes too long
template <typename Driver>
class AccessibilityContract : public ::testing::Test {
protected:
    void SetUp() override { skipWhatIsLacking(driver); }

    template <typename Value>
    [[nodiscard]] std::optional<Value> read(const AXElement& element, std::string_view name) {
        const auto value = driver.accessibility().attribute(element, name);
        const auto* exact = value ? std::get_if<Value>(&*value) : nullptr;
        return exact ? std::optional<Value>(*exact) : std::nullopt;
    }

    [[nodiscard]] std::optional<AXElement> focused() {
        return read<AXElement>(driver.accessibility().application(driver.pid()), "AXFocusedUIElement");
    }

    /// Waits until the focused element is a password field, or until none is focused.
    [[nodiscard]] std::optional<AXElement> focusedField(bool password) {
        std::optional<AXElement> found;
        const bool inTime = driver.waitUntil([&] {
            found = focused();
            return found && (read<std::string>(*found, "AXSubrole") == "AXSecureTextField") == password;
        });
        return inTime ? found : std::nullopt;
    }

    static constexpr pid_t nobody = std::numeric_limits<pid_t>::max();

    Driver driver;
};

TYPED_TEST_SUITE_P(AccessibilityContract);

TYPED_TEST_P(AccessibilityContract, AFocusedTextFieldIsEnabledAndSettable) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    const auto role = this->template read<std::string>(*field, "AXRole");
    EXPECT_TRUE(role == "AXTextField" || role == "AXTextArea") << role.value_or("none");
    EXPECT_EQ(this->template read<bool>(*field, "AXEnabled"), true);
    EXPECT_TRUE(this->driver.accessibility().isAttributeSettable(*field, "AXValue"));
    EXPECT_FALSE(this->driver.accessibility().isAttributeSettable(*field, "AXNoSuchAttribute"));
}

TYPED_TEST_P(AccessibilityContract, APasswordFieldHasItsSubrole) {
    this->driver.focusPasswordField();
    const auto field = this->focusedField(true);
    ASSERT_TRUE(field);
    EXPECT_EQ(this->template read<std::string>(*field, "AXRole"), "AXTextField");
}

TYPED_TEST_P(AccessibilityContract, SeveralAttributesComeInTheOrderAsked) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    constexpr std::array<std::string_view, 3> names{"AXEnabled", "AXNoSuchAttribute", "AXRole"};
    const auto values = this->driver.accessibility().attributes(*field, names);
    ASSERT_TRUE(values);
    ASSERT_EQ(values->size(), 3U);
    EXPECT_EQ((*values)[0], AXValue(true));
    EXPECT_TRUE(std::holds_alternative<std::monostate>((*values)[1]));
    EXPECT_TRUE(std::holds_alternative<std::string>((*values)[2]));
}

TYPED_TEST_P(AccessibilityContract, AnAttributeThatIsMissingIsNone) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    EXPECT_FALSE(this->driver.accessibility().attribute(*field, "AXNoSuchAttribute"));
}

TYPED_TEST_P(AccessibilityContract, ReferencesToOneElementAreEqual) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    EXPECT_EQ(this->focusedField(false), field);
    this->driver.focusPasswordField();
    const auto password = this->focusedField(true);
    ASSERT_TRUE(password);
    EXPECT_NE(*password, *field);
}

TYPED_TEST_P(AccessibilityContract, AnElementIsAmongTheChildrenOfItsParent) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    const auto parent = this->template read<AXElement>(*field, "AXParent");
    ASSERT_TRUE(parent);
    const auto children = this->template read<std::vector<AXElement>>(*parent, "AXChildren");
    ASSERT_TRUE(children);
    EXPECT_NE(std::ranges::find(*children, *field), children->end());
}

TYPED_TEST_P(AccessibilityContract, AProcessThatDoesNotRunGivesNoAnswer) {
    const auto application = this->driver.accessibility().application(this->nobody);
    constexpr std::array<std::string_view, 1> names{"AXRole"};
    EXPECT_FALSE(this->driver.accessibility().attribute(application, "AXFocusedUIElement"));
    EXPECT_FALSE(this->driver.accessibility().attributes(application, names));
    EXPECT_FALSE(this->driver.accessibility().isAttributeSettable(application, "AXValue"));
}

TYPED_TEST_P(AccessibilityContract, AnApplicationThatHangsCostsTheTimeoutAlone) {
    using namespace std::chrono_literals;
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    auto& accessibility = this->driver.accessibility();
    EXPECT_TRUE(accessibility.isAnswering(*field));
    this->driver.stopAnswering();
    accessibility.setMessagingTimeout(*field, 15ms);
    constexpr std::array<std::string_view, 3> names{"AXRole", "AXSubrole", "AXEnabled"};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(accessibility.attributes(*field, names));
    EXPECT_FALSE(accessibility.isAnswering(*field));
    EXPECT_FALSE(accessibility.isAttributeSettable(*field, "AXValue"));
    // Far more than two timeouts, for a busy machine; far less than the second or more that a call takes without one.
    EXPECT_LT(std::chrono::steady_clock::now() - start, 500ms);
}

TYPED_TEST_P(AccessibilityContract, SeveralElementsAreReadAsOneByOne) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    const auto parent = this->template read<AXElement>(*field, "AXParent");
    ASSERT_TRUE(parent);
    auto& accessibility = this->driver.accessibility();
    const std::vector<AXElement> elements{*field, accessibility.application(this->nobody), *parent};
    constexpr std::array<std::string_view, 2> names{"AXRole", "AXNoSuchAttribute"};
    const auto each = accessibility.attributesOfEach(elements, names);
    ASSERT_EQ(each.size(), 3U);
    EXPECT_EQ(each[0], accessibility.attributes(*field, names));
    EXPECT_FALSE(each[1]);
    EXPECT_EQ(each[2], accessibility.attributes(*parent, names));
    EXPECT_TRUE(accessibility.attributesOfEach({}, names).empty());
}

TYPED_TEST_P(AccessibilityContract, TheFocusedElementIsInTheFocusedWindow) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    const auto application = this->driver.accessibility().application(this->driver.pid());
    const auto window = this->template read<AXElement>(application, "AXFocusedWindow");
    ASSERT_TRUE(window);
    EXPECT_EQ(this->template read<std::string>(*window, "AXRole"), "AXWindow");
    EXPECT_EQ(this->template read<AXElement>(*field, "AXWindow"), window);
}

TYPED_TEST_P(AccessibilityContract, TheSelectionCanBeReadAndSet) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    auto& accessibility = this->driver.accessibility();
    ASSERT_TRUE(this->driver.waitUntil(
        [&] { return this->template read<AXTextRange>(*field, "AXSelectedTextRange").has_value(); }));
    EXPECT_TRUE(accessibility.isAttributeSettable(*field, "AXSelectedTextRange"));
    for (const auto& range : {AXTextRange{0, 3}, AXTextRange{2, 0}, AXTextRange{1, 1}}) {
        EXPECT_TRUE(accessibility.setAttribute(*field, "AXSelectedTextRange", range));
        EXPECT_TRUE(this->driver.waitUntil([&] {
            return this->template read<AXTextRange>(*field, "AXSelectedTextRange") == range;
        })) << range.location
            << ' ' << range.length;
    }
    EXPECT_FALSE(accessibility.setAttribute(*field, "AXNoSuchAttribute", true));
    EXPECT_FALSE(accessibility.setAttribute(*field, "AXSelectedTextRange", true));
}

TYPED_TEST_P(AccessibilityContract, TheTextOfAFieldIsInItsFrameFromLeftToRight) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    auto& accessibility = this->driver.accessibility();
    EXPECT_GE(this->template read<std::int64_t>(*field, "AXNumberOfCharacters").value_or(0), 3);
    const auto frame = accessibility.frame(*field);
    const auto text = accessibility.frameOfText(*field, {0, 3});
    const auto third = accessibility.frameOfText(*field, {2, 1});
    const auto position = accessibility.frameOfText(*field, {1, 0});
    ASSERT_TRUE(frame && text && third && position);
    EXPECT_GT(frame->width, text->width);
    EXPECT_GE(text->x, frame->x);
    EXPECT_GE(text->y, frame->y);
    EXPECT_LE(text->right(), frame->right());
    EXPECT_GT(third->x, text->x);
    EXPECT_GT(position->x, text->x);
    EXPECT_LT(position->x, third->x);
    const auto application = accessibility.application(this->nobody);
    EXPECT_FALSE(accessibility.frame(application));
    EXPECT_FALSE(accessibility.frameOfText(application, {0, 1}));
}

TYPED_TEST_P(AccessibilityContract, TextIsReadAndReplacedWhereItIsWhatWasExpected) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    auto& accessibility = this->driver.accessibility();
    const auto first = accessibility.textIn(*field, {0, 3});
    ASSERT_TRUE(first && first->size() == 3) << first.value_or("none");
    const auto isSaid = [&](const AXTextRange& range, const std::string& text) {
        return this->driver.waitUntil([&] { return accessibility.textIn(*field, range) == text; });
    };
    const auto middle = first->substr(1, 1);
    EXPECT_EQ(accessibility.replaceText(*field, {1, 1}, middle, "\u05e9\u05c1\u05dc"), AXReplacement::done);
    EXPECT_TRUE(isSaid({0, 5}, first->substr(0, 1) + "\u05e9\u05c1\u05dc" + first->substr(2)));
    EXPECT_EQ(accessibility.replaceText(*field, {1, 3}, "\u05e9\u05dc\u05dc", "x"), AXReplacement::differs);
    EXPECT_EQ(accessibility.replaceText(*field, {1, 3}, "\u05e9\u05c1\u05dc", middle), AXReplacement::done);
    EXPECT_TRUE(isSaid({0, 3}, *first));
    const auto application = accessibility.application(this->nobody);
    EXPECT_FALSE(accessibility.textIn(application, {0, 1}));
    EXPECT_EQ(accessibility.replaceText(application, {0, 1}, "a", "b"), AXReplacement::failed);
}

TYPED_TEST_P(AccessibilityContract, AnActionThatIsMissingFails) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    EXPECT_EQ(this->driver.accessibility().performAction(*field, "AXNoSuchAction"), AXActionResult::failed);
    EXPECT_EQ(std::ranges::count(this->driver.accessibility().actionNames(*field), "AXNoSuchAction"), 0);
    const auto application = this->driver.accessibility().application(this->nobody);
    EXPECT_EQ(this->driver.accessibility().performAction(application, "AXPress"), AXActionResult::failed);
    EXPECT_TRUE(this->driver.accessibility().actionNames(application).empty());
}

TYPED_TEST_P(AccessibilityContract, AnOpeningMenuIsAnnouncedAndCanBeCancelled) {
    this->driver.focusTextField();
    const auto field = this->focusedField(false);
    ASSERT_TRUE(field);
    auto& accessibility = this->driver.accessibility();
    std::optional<AXElement> menu;
    const auto token = accessibility.observe(
        accessibility.application(this->driver.pid()), "AXMenuOpened", [&](const AXElement& about) {
            if (!menu && this->template read<std::string>(about, "AXRole") == "AXMenu") {
                menu = about;
            }
        });
    ASSERT_TRUE(token);
    this->driver.openContextMenu();
    ASSERT_TRUE(this->driver.waitUntil([&] { return menu.has_value(); }));
    const auto items = this->template read<std::vector<AXElement>>(*menu, "AXChildren");
    ASSERT_TRUE(items && !items->empty());
    EXPECT_EQ(this->template read<std::string>(items->front(), "AXRole"), "AXMenuItem");
    EXPECT_EQ(accessibility.performAction(*menu, "AXCancel"), AXActionResult::done);
    EXPECT_TRUE(this->driver.waitUntil([&] { return this->template read<std::string>(*menu, "AXRole") != "AXMenu"; }));
}

TYPED_TEST_P(AccessibilityContract, NothingIsAnnouncedOnceTheTokenIsDropped) {
    this->driver.focusTextField();
    ASSERT_TRUE(this->focusedField(false));
    auto& accessibility = this->driver.accessibility();
    const auto application = accessibility.application(this->driver.pid());
    int dropped = 0;
    int kept = 0;
    auto token = accessibility.observe(application, "AXMenuOpened", [&](const AXElement&) { ++dropped; });
    const auto other = accessibility.observe(application, "AXMenuOpened", [&](const AXElement&) { ++kept; });
    ASSERT_TRUE(token && other);
    token->cancel();
    this->driver.openContextMenu();
    EXPECT_TRUE(this->driver.waitUntil([&] { return kept > 0; }));
    EXPECT_EQ(dropped, 0);
    EXPECT_FALSE(accessibility.observe(application, "AXNoSuchNotification", [](const AXElement&) {}));
    EXPECT_FALSE(
        accessibility.observe(accessibility.application(this->nobody), "AXMenuOpened", [](const AXElement&) {}));
}

REGISTER_TYPED_TEST_SUITE_P(AccessibilityContract, AFocusedTextFieldIsEnabledAndSettable, APasswordFieldHasItsSubrole,
                            SeveralAttributesComeInTheOrderAsked, AnAttributeThatIsMissingIsNone,
                            ReferencesToOneElementAreEqual, AnElementIsAmongTheChildrenOfItsParent,
                            AProcessThatDoesNotRunGivesNoAnswer, SeveralElementsAreReadAsOneByOne,
                            TheFocusedElementIsInTheFocusedWindow, TheSelectionCanBeReadAndSet,
                            TheTextOfAFieldIsInItsFrameFromLeftToRight, TextIsReadAndReplacedWhereItIsWhatWasExpected,
                            AnActionThatIsMissingFails, AnOpeningMenuIsAnnouncedAndCanBeCancelled,
                            NothingIsAnnouncedOnceTheTokenIsDropped, AnApplicationThatHangsCostsTheTimeoutAlone);

} // namespace quillane::testing
