// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"
#include "core/direction/WritingDirection.hpp"
#include "direction/DirectionServices.hpp"
#include "fakes/FakeDesktop.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace quillane::testing {

using namespace std::chrono_literals;
using core::SupportedApplication;
using core::WritingDirection;
using fakes::FakeElement;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Rows of the table.
namespace applications {
inline const SupportedApplication& outlook = *core::supportedApplication("com.microsoft.Outlook");
inline const SupportedApplication& chrome = *core::supportedApplication("com.google.Chrome");
inline const SupportedApplication& safari = *core::supportedApplication("com.apple.Safari");
inline const SupportedApplication& textEdit = *core::supportedApplication("com.apple.TextEdit");
inline const SupportedApplication& notes = *core::supportedApplication("com.apple.Notes");
inline const SupportedApplication& mail = *core::supportedApplication("com.apple.mail");
inline const SupportedApplication& word = *core::supportedApplication("com.microsoft.Word");
} // namespace applications

/// A faked desktop with an application in front, and the adapters' messages, in English.
class DirectionTest : public ::testing::Test {
protected:
    void openApplication(std::string_view bundleID) {
        desktop.withFrontApplication(std::string(bundleID));
        pid = desktop.frontPid();
        window = &tree().add("AXWindow");
        tree().with("AXFocusedWindow", *window);
    }

    FakeElement& tree() { return desktop.accessibility.tree(pid); }

    /// Adds elements that no search is for.
    static void fill(FakeElement& parent, int count) {
        for (int index = 0; index < count; ++index) {
            parent.add("AXGroup");
        }
    }

    void focus(FakeElement& element) { desktop.accessibility.focus(pid, &element); }

    DirectionServices services() {
        return {desktop.accessibility, desktop.workspace, desktop.queue, desktop.userDefaults, desktop.tap};
    }

    DirectionReport report() {
        return [this](const core::LocalizedText& text) { said.push_back(text.rendered(core::AppLanguage::english)); };
    }

    [[nodiscard]] long countOf(const FakeElement& element, const std::string& action) const {
        return std::ranges::count(desktop.accessibility.actions(), fakes::FakeAccessibility::Action{&element, action});
    }

    fakes::FakeDesktop desktop;
    pid_t pid = 0;
    FakeElement* window = nullptr;
    std::vector<std::string> said;
};

} // namespace quillane::testing
