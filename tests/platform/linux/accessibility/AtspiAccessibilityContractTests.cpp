// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "contracts/AccessibilityContract.hpp"
#include "platform/linux/accessibility/AtspiTest.hpp"

namespace quillane {

namespace {

using live::Key;

/// The contract of Accessibility on a form on a private desktop.
class AtspiDriver : public AtspiTest {
public:
    AtspiDriver() {
        SetUp();
        form_.emplace(startForm("readonly"));
    }

    ~AtspiDriver() override {
        TearDown(); // keeps the evidence while everything still runs
        form_.reset();
    }

    void TestBody() override {}

    using AtspiTest::accessibility;

    [[nodiscard]] pid_t pid() const { return form_->pid(); }

    void focusTextField() {
        moveTo("plain");
        const auto caret = [this] {
            const auto field = focused(pid());
            const auto range = field ? read<AXTextRange>(*field, "AXSelectedTextRange") : std::nullopt;
            return range ? range->location + range->length : -1;
        };
        if (!typed_) {
            desktop().keyboard().type("abc");
            typed_ = true;
            ASSERT_TRUE(testing::waitUntil([&] { return caret() == 3; }));
        }
    }

    void focusPasswordField() { moveTo("password"); }

    void openContextMenu() {
        // The application learns from the registry who observes it, and a key could overtake that. It has arrived once
        // the registry lists the observer and the application has answered a question over the same bus.
        ASSERT_TRUE(live::waitUntil([&] { return registeredEvents().find("Showing") != std::string::npos; }));
        ASSERT_TRUE(testing::waitUntil([&] {
            const auto field = focused(pid());
            return field && read<std::string>(*field, "AXTitle").has_value();
        }));
        desktop().keyboard().tap(Key::menu);
    }

    void stopAnswering() {
        form_->signal(SIGSTOP);
        // Facts about the focused element are valid for half a second.
        EXPECT_TRUE(testing::waitUntil([this] { return !focusedField(pid()); }));
    }

    bool waitUntil(const std::function<bool()>& condition) { return testing::waitUntil(condition); }

private:
    void moveTo(const char* title) {
        for (int i = 0; i < 3; ++i) {
            std::optional<AXElement> before;
            std::optional<std::string> titleBefore; // which a busy application may not report in time
            ASSERT_TRUE(testing::waitUntil([&] {
                before = focused(pid());
                titleBefore = before ? read<std::string>(*before, "AXTitle") : std::nullopt;
                return titleBefore.has_value();
            }));
            if (titleBefore == title) {
                return;
            }
            desktop().keyboard().tap(Key::tab);
            ASSERT_TRUE(testing::waitUntil([&] {
                const auto now = focused(pid());
                return now && *now != *before;
            }));
        }
        FAIL() << "the form has no field " << title;
    }

    /// The notifications that applications are observed for, from the registry of the accessibility bus.
    [[nodiscard]] std::string registeredEvents() {
        const auto call = [this](const char* name, const char* path, const char* method,
                                 const live::Environment& more) {
            return desktop()
                .run({"gdbus", "call", "--session", "--dest", name, "--object-path", path, "--method", method},
                     live::defaultTimeout, more)
                .output;
        };
        const auto address = call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress", {}); // ('address',)
        const auto first = address.find('\'') + 1;
        return call("org.a11y.atspi.Registry", "/org/a11y/atspi/registry",
                    "org.a11y.atspi.Registry.GetRegisteredEvents",
                    {{"DBUS_SESSION_BUS_ADDRESS", address.substr(first, address.find('\'', first) - first)}});
    }

    std::optional<live::ChildProcess> form_;
    bool typed_ = false;
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Atspi, AccessibilityContract, AtspiDriver);

} // namespace testing

} // namespace quillane
