// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/accessibility/AtspiAccessibility.hpp"
#include "platform/linux/dbus/BusTest.hpp"
#include "platform/linux/dbus/SessionBus.hpp"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <string>

namespace quillane {

/// A desktop, and the agent's side of accessibility on it.
class AtspiTest : public testing::BusTest {
protected:
    static constexpr std::chrono::milliseconds keyTimeout{15}; // what a key press grants an application

    explicit AtspiTest(live::LiveDesktopOptions options = {.tray = false}) : BusTest(std::move(options)) {}

    void TearDown() override {
        accessibility_.reset();
        session_.reset();
        BusTest::TearDown();
    }

    Accessibility& accessibility() {
        if (!accessibility_) {
            session_ = std::make_unique<SessionBus>();
            accessibility_ = std::make_unique<AtspiAccessibility>(*session_);
        }
        return *accessibility_;
    }

    live::ChildProcess startForm(const std::string& focus = "plain") {
        return live::required(desktop().startApplication(
            {QUILLANE_FORM, "--report", (desktop().home() / "report").string(), "--focus", focus}));
    }

    template <typename Value>
    std::optional<Value> read(const AXElement& element, std::string_view name) {
        const auto value = accessibility().attribute(element, name);
        const auto* exact = value ? std::get_if<Value>(&*value) : nullptr;
        return exact ? std::optional<Value>(*exact) : std::nullopt;
    }

    std::optional<AXElement> focused(pid_t pid) {
        const auto application = accessibility().application(pid);
        accessibility().setMessagingTimeout(application, keyTimeout);
        return read<AXElement>(application, "AXFocusedUIElement");
    }

    /// The attributes that a key press needs.
    struct Field {
        std::string role;
        std::string subrole;
        bool enabled = false;
        bool settable = false;

        bool operator==(const Field&) const = default;

        friend std::ostream& operator<<(std::ostream& out, const Field& field) {
            return out << field.role << ' ' << field.subrole << (field.enabled ? " enabled" : "")
                       << (field.settable ? " settable" : "");
        }
    };

    std::optional<Field> focusedField(pid_t pid) {
        const auto element = focused(pid);
        if (!element) {
            return std::nullopt;
        }
        constexpr std::array<std::string_view, 3> names{"AXRole", "AXSubrole", "AXEnabled"};
        const auto values = accessibility().attributes(*element, names);
        if (!values) {
            return std::nullopt;
        }
        const auto* role = std::get_if<std::string>(&(*values)[0]);
        const auto* subrole = std::get_if<std::string>(&(*values)[1]);
        const auto* enabled = std::get_if<bool>(&(*values)[2]);
        return Field{role != nullptr ? *role : "", subrole != nullptr ? *subrole : "", enabled != nullptr && *enabled,
                     accessibility().isAttributeSettable(*element, "AXValue")};
    }

    static inline const Field plainField{"AXTextField", "", true, true};

    bool waitForField(pid_t pid, const Field& expected) {
        std::optional<Field> last;
        const bool found = testing::waitUntil([&] { return (last = focusedField(pid)) == expected; });
        EXPECT_TRUE(found) << (last ? ::testing::PrintToString(*last) : "none");
        return found;
    }

    std::unique_ptr<SessionBus> session_;
    std::unique_ptr<AtspiAccessibility> accessibility_;
};

} // namespace quillane
