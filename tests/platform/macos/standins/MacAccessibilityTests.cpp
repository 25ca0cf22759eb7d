// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/accessibility/MacAccessibility.hpp"

#include "contracts/AccessibilityContract.hpp"
#include "standins/macos/Mac.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using standin::AccessibleElement;
using ::testing::ElementsAre;

constexpr pid_t editor = 321;

/// An application with a window, a text field and a password field.
class StandInAccessibilityDriver {
public:
    StandInAccessibilityDriver() {
        auto& root = application().root;
        root.with("AXFocusedWindow", window_);
        for (auto* field : {&text_, &password_}) {
            field->with("AXEnabled", standin::value(true))
                .with("AXValue", standin::value("abc"))
                .with("AXSelectedTextRange", standin::rangeValue(0, 0))
                .with("AXWindow", window_)
                .settable("AXValue")
                .settable("AXSelectedTextRange");
        }
        text_.with("AXSubrole", standin::value("AXStandardTextField")).withText(u"abc");
        text_.with("AXNumberOfCharacters", standin::value(3))
            .with("AXPosition", standin::pointValue(100, 50))
            .with("AXSize", standin::sizeValue(200, 20))
            .withBounds([](const CFRange& range) {
                return standin::rectangleValue(104.0 + 8.0 * static_cast<double>(range.location), 52,
                                               8.0 * static_cast<double>(range.length), 16);
            });
        password_.with("AXSubrole", standin::value("AXSecureTextField"));
    }

    Accessibility& accessibility() { return accessibility_; }

    static pid_t pid() { return editor; }

    void focusTextField() { application().root.with("AXFocusedUIElement", text_); }

    void focusPasswordField() { application().root.with("AXFocusedUIElement", password_); }

    void openContextMenu() {
        auto& menu = window_.add("AXMenu");
        menu.add("AXMenuItem");
        menu.withAction("AXCancel", [&menu] {
            menu.isGone = true;
            return kAXErrorSuccess;
        });
        mac.accessibility.notify(editor, "AXMenuOpened", menu);
    }

    void stopAnswering() { application().hangs = true; }

    bool waitUntil(const std::function<bool()>& condition) { return mac.waitUntil(condition); }

    standin::Mac mac;

private:
    standin::AccessibleApplication& application() { return mac.accessibility.application(editor); }

    MacAccessibility accessibility_{[this] { return mac.now(); }};
    AccessibleElement& window_ = application().root.add("AXWindow");
    AccessibleElement& text_ = window_.add("AXTextField");
    AccessibleElement& password_ = window_.add("AXTextField");
};

class MacAccessibilityTest : public ::testing::Test {
protected:
    [[nodiscard]] std::optional<AXValue> read(std::string_view name) {
        return accessibility.attribute(application, name);
    }

    AccessibleElement& root() { return mac.accessibility.application(editor).root; }

    standin::Mac mac;
    MacAccessibility accessibility{[this] { return mac.now(); }};
    AXElement application = (static_cast<void>(root()), accessibility.application(editor));
};

TEST_F(MacAccessibilityTest, TextIsReplacedInUnitsOfUtf16) {
    root()
        .withText(u"\U0001F600 ab")
        .with("AXSelectedTextRange", standin::rangeValue(5, 0))
        .settable("AXSelectedTextRange");
    EXPECT_EQ(accessibility.textIn(application, {0, 3}), "\U0001F600 ");
    EXPECT_EQ(accessibility.replaceText(application, {3, 2}, "ab", "שנ"), AXReplacement::done);
    EXPECT_EQ(root().text(), u"\U0001F600 שנ");
    EXPECT_EQ(read("AXSelectedTextRange"), AXValue(AXTextRange{5, 0}));
}

TEST_F(MacAccessibilityTest, TextWhoseRangeCannotBeSelectedStays) {
    root().withText(u"abc").with("AXSelectedTextRange", standin::rangeValue(3, 0));
    EXPECT_EQ(accessibility.replaceText(application, {0, 3}, "abc", "שנב"), AXReplacement::failed);
    EXPECT_EQ(root().text(), u"abc");
}

TEST_F(MacAccessibilityTest, EachTypeOfValueIsTranslated) {
    const auto address =
        standin::Value::adopt(CFURLCreateWithString(nullptr, standin::string("file:///a%20b").get(), nullptr));
    root()
        .with("AXTitle", standin::value("כותרת"))
        .with("AXEnabled", standin::value(false))
        .with("AXNumber", standin::value(1))
        .with("AXDocument", address)
        .with("AXRange", standin::rangeValue(3, 4));
    EXPECT_EQ(read("AXTitle"), AXValue("כותרת"));
    EXPECT_EQ(read("AXEnabled"), AXValue(false));
    EXPECT_EQ(read("AXNumber"), AXValue(std::int64_t{1})) << "a flag to some applications";
    EXPECT_EQ(read("AXDocument"), AXValue("file:///a%20b"));
    EXPECT_EQ(read("AXRange"), AXValue(AXTextRange{3, 4}));
}

TEST_F(MacAccessibilityTest, ValuesOfOtherTypesAreKeptAndWrittenBack) {
    const auto marker = standin::foreignObject();
    root().with("AXMarker", marker).with("AXFraction", standin::value(0.5)).with("AXSize", standin::sizeValue());
    root().settable("AXMarker").settable("AXSize");
    for (const auto* name : {"AXMarker", "AXFraction", "AXSize"}) {
        const auto value = read(name);
        ASSERT_TRUE(value && std::holds_alternative<AXOpaqueValue>(*value)) << name;
        EXPECT_EQ(read(name), value) << "compared as their application does";
    }
    EXPECT_NE(read("AXMarker"), read("AXFraction"));
    const auto before = read("AXMarker");
    root().with("AXMarker", standin::foreignObject());
    EXPECT_NE(read("AXMarker"), before);
    EXPECT_TRUE(accessibility.setAttribute(application, "AXMarker", *before));
    EXPECT_EQ(read("AXMarker"), before);
    EXPECT_FALSE(accessibility.setAttribute(application, "AXMarker", *read("AXSize"))) << "of another type";
}

TEST_F(MacAccessibilityTest, EachTypeOfValueIsWritten) {
    auto& child = root().add("AXButton");
    const std::vector<std::pair<standin::Value, AXValue>> values{
        {standin::value(true), false},
        {standin::value(1), std::int64_t{-2}},
        {standin::value("a"), std::string("ב")},
        {standin::rangeValue(0, 0), AXTextRange{5, 6}},
    };
    root().settable("AXSlot");
    for (const auto& [held, written] : values) {
        root().with("AXSlot", held);
        EXPECT_TRUE(accessibility.setAttribute(application, "AXSlot", written)) << written.index();
        EXPECT_EQ(read("AXSlot"), written) << written.index();
    }
    root().with("AXSlot", child);
    EXPECT_TRUE(accessibility.setAttribute(application, "AXSlot", application));
    EXPECT_EQ(read("AXSlot"), AXValue(application));
}

TEST_F(MacAccessibilityTest, ListsAndForeignValuesAreNotWritten) {
    struct Foreign final : AXOpaqueValue::Handle {
        [[nodiscard]] bool isSame(const Handle&) const override { return false; }
    };

    root().with("AXSlot", standin::value("a")).settable("AXSlot");
    EXPECT_FALSE(accessibility.setAttribute(application, "AXSlot", AXValue()));
    EXPECT_FALSE(accessibility.setAttribute(application, "AXSlot", std::vector<AXElement>{application}));
    EXPECT_FALSE(accessibility.setAttribute(application, "AXSlot", AXOpaqueValue(std::make_shared<Foreign>())));
    EXPECT_EQ(mac.accessibility.application(editor).calls, 0);
}

TEST_F(MacAccessibilityTest, ListsOfOtherThingsAreAbsent) {
    root().with("AXMixed", standin::list({standin::elementValue(editor, root()), standin::value(1)}));
    root().with("AXNone", standin::list({}));
    EXPECT_FALSE(read("AXMixed"));
    EXPECT_EQ(read("AXNone"), AXValue(std::vector<AXElement>()));
}

TEST_F(MacAccessibilityTest, ErrorsAreAbsent) {
    root().with("AXNull", standin::borrowed(kCFNull)).with("AXPlaceholder", standin::errorValue(kAXErrorNoValue));
    root().with("AXEmpty", standin::Value());
    for (const auto error : {kAXErrorFailure, kAXErrorNoValue, kAXErrorAttributeUnsupported, kAXErrorIllegalArgument}) {
        root().failing("AXBroken", error);
        EXPECT_FALSE(read("AXBroken")) << error;
    }
    EXPECT_FALSE(read("AXNull"));
    EXPECT_FALSE(read("AXPlaceholder"));
    EXPECT_FALSE(read("AXEmpty"));
}

TEST_F(MacAccessibilityTest, ErrorAmongSeveralAttributesLeavesTheOthers) {
    root().failing("AXBroken", kAXErrorNoValue).with("AXTitle", standin::value("a"));
    constexpr std::array<std::string_view, 3> names{"AXBroken", "AXTitle", "AXUnknown"};
    const auto values = accessibility.attributes(application, names);
    ASSERT_TRUE(values);
    EXPECT_THAT(*values, ElementsAre(AXValue(), AXValue("a"), AXValue()));
    EXPECT_EQ(mac.accessibility.application(editor).calls, 1);
}

TEST_F(MacAccessibilityTest, ShortAnswerIsNoAnswer) {
    root().with("AXTitle", standin::value("a"));
    mac.accessibility.answersShortly = "AXRole";
    constexpr std::array<std::string_view, 2> names{"AXRole", "AXTitle"};
    EXPECT_FALSE(accessibility.attributes(application, names));
}

TEST_F(MacAccessibilityTest, WithoutPermissionEverythingFails) {
    root().with("AXTitle", standin::value("a")).settable("AXTitle").withAction("AXPress", [] {
        return kAXErrorSuccess;
    });
    mac.accessibility.isTrusted = false;
    constexpr std::array<std::string_view, 1> names{"AXTitle"};
    EXPECT_FALSE(read("AXTitle"));
    EXPECT_FALSE(accessibility.attributes(application, names));
    EXPECT_FALSE(accessibility.isAttributeSettable(application, "AXTitle"));
    EXPECT_FALSE(accessibility.setAttribute(application, "AXTitle", std::string("b")));
    EXPECT_TRUE(accessibility.actionNames(application).empty());
    EXPECT_EQ(accessibility.performAction(application, "AXPress"), AXActionResult::failed);
    EXPECT_FALSE(accessibility.observe(application, "AXMenuOpened", [](const AXElement&) {}));
    EXPECT_TRUE(accessibility.isAnswering(application)) << "a refusal is an answer";
}

TEST_F(MacAccessibilityTest, ActionNamesThatAreNotTextsAreIgnored) {
    root().withAction("AXPress", [] { return kAXErrorSuccess; }).withAction("AXShowMenu", [] {
        return kAXErrorCannotComplete; // as while the menu is shown
    });
    EXPECT_THAT(accessibility.actionNames(application), ElementsAre("AXPress", "AXShowMenu"));
    EXPECT_EQ(accessibility.performAction(application, "AXPress"), AXActionResult::done);
    EXPECT_EQ(accessibility.performAction(application, "AXShowMenu"), AXActionResult::cannotComplete);
    EXPECT_TRUE(accessibility.isAnswering(application)) << "an action is no read";
}

TEST_F(MacAccessibilityTest, ElementsThatAreReadInheritTheTimeout) {
    root().add("AXWindow").add("AXButton");
    accessibility.setMessagingTimeout(application, 15ms);
    const auto windows = std::get<std::vector<AXElement>>(*read("AXChildren"));
    const auto buttons = std::get<std::vector<AXElement>>(*accessibility.attribute(windows.front(), "AXChildren"));
    mac.accessibility.application(editor).hangs = true;
    const auto before = mac.now();
    EXPECT_FALSE(accessibility.attribute(buttons.front(), "AXRole"));
    EXPECT_NEAR(std::chrono::duration<double>(mac.now() - before).count(), 0.015, 1e-6);
}

TEST_F(MacAccessibilityTest, ObserverThatCannotBeMadeIsNone) {
    mac.accessibility.makesObservers = false;
    EXPECT_FALSE(accessibility.observe(application, "AXMenuOpened", [](const AXElement&) {}));
}

TEST_F(MacAccessibilityTest, HandlerMayEndItsObservation) {
    std::optional<core::Subscription> token;
    int notices = 0;
    token = accessibility.observe(application, "AXMenuOpened", [&](const AXElement& about) {
        token.reset();
        EXPECT_EQ(about, application);
        ++notices;
    });
    mac.accessibility.notify(editor, "AXMenuOpened", root());
    mac.accessibility.notify(editor, "AXMenuOpened", root());
    mac.turn();
    EXPECT_EQ(notices, 1);
}

TEST_F(MacAccessibilityTest, ExceptionOfAHandlerEndsInTheNotice) {
    const auto token =
        accessibility.observe(application, "AXMenuOpened", [](const AXElement&) { throw std::runtime_error("a"); });
    mac.accessibility.notify(editor, "AXMenuOpened", root());
    mac.turn();
    EXPECT_EQ(mac.log.size(), 1U);
}

TEST_F(MacAccessibilityTest, ElementsOfOneKindAreComparedByWhatTheyMean) {
    struct Foreign final : AXElement::Handle {
        [[nodiscard]] bool isSame(const Handle&) const override { return false; }
    };

    EXPECT_EQ(application, accessibility.application(editor));
    EXPECT_NE(application, accessibility.application(editor + 1));
    EXPECT_FALSE(application.handle().isSame(Foreign()));
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(MacStandIn, AccessibilityContract, StandInAccessibilityDriver);
} // namespace testing
} // namespace quillane
