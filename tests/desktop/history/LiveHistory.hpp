// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/HistoryDesktop.hpp"
#include "desktop/fixture/FocusWatcher.hpp"

#include <filesystem>
#include <optional>
#include <vector>

namespace quillane::live {

/// The clipboard history of the agent, with an unlocked keyring and programs that copy.
class LiveHistoryTest : public AgentTest {
protected:
    void SetUp() override {
        AgentTest::SetUp();
        core::ClipboardOptions options;
        options.enabled = true;
        require(writeHistorySettings(desktop(), options), "the settings cannot be written");
        keyring_ = required(startKeyring(desktop()));
    }

    void TearDown() override {
        AgentTest::TearDown();
        keyring_.reset();
    }

    /// Starts the agent and waits until its history is there. `more` is added to its environment.
    void startHistory(const Environment& more = {}) {
        startAgent(more);
        require(agent().waitForStatus([](const auto& status) {
            return status.at("clipboard").at("status") == "Clipboard history is active";
        }),
                "the history is not active");
    }

    /// Opens the panel by its hot key, and waits until it has the keys.
    void openPanel() {
        open([&] { pressHotKey(); });
    }

    /// Does what opens the panel, and waits until the panel reports that it has the focus: like a menu, it is not a
    /// child of the application for screen readers. Returns what has the focus.
    template <typename Steps>
    AccessibleNode open(const Steps& steps) {
        FocusWatcher focus(desktop().accessibility());
        steps();
        require(isPanelOpen(true), "the panel does not open");
        const auto root = desktop().accessibility().application(agent().process().pid());
        require(root.has_value(), "the agent has no accessibility tree");
        const auto focused = focus.next(defaultTimeout, root->bus);
        require(focused.has_value(), "the panel has no focus");
        return *focused;
    }

    void pressHotKey() { desktop().keyboard().tapWith({Key::leftSuper, Key::leftShift}, Key::v); }

    /// Waits until it is open, or closed.
    [[nodiscard]] bool isPanelOpen(bool expected) {
        return agent().waitForStatus(
            [&](const auto& status) { return status.at("clipboard").at("panelOpen") == expected; });
    }

    /// What another program would paste.
    [[nodiscard]] std::string clipboard(const std::string& type = "UTF8_STRING") {
        return desktop().run({"xclip", "-selection", "clipboard", "-o", "-t", type}).output;
    }

    void copy(const std::string& text) {
        const auto copying = desktop().run({"sh", "-c", "printf %s \"$0\" | xclip -selection clipboard -i", text});
        ASSERT_TRUE(copying.succeeded()) << copying.errors;
    }

    [[nodiscard]] bool hasEntries(int count) {
        return agent().waitForStatus([&](const auto& status) { return status.at("clipboard").at("entries") == count; });
    }

    [[nodiscard]] std::filesystem::path folder() {
        return desktop().home() / ".local" / "share" / "Quillane" / "ClipboardHistory";
    }

    /// The files of entries in the history's folder.
    [[nodiscard]] std::vector<std::filesystem::path> entryFiles() {
        std::vector<std::filesystem::path> found;
        std::error_code absent;
        for (const auto& file : std::filesystem::directory_iterator(folder(), absent)) {
            if (file.path().extension() == ".clip" && file.path().stem().string().size() == 36) {
                found.push_back(file.path());
            }
        }
        return found;
    }

    /// Presses a button of the settings window, or of a question over it, as a screen reader does.
    [[nodiscard]] bool pressButton(const std::string& name) {
        return waitUntil([&] {
            const auto root = desktop().accessibility().application(agent().process().pid());
            const auto found = root ? desktop().accessibility().find(*root,
                                                                     [&](const AccessibleNode& node) {
                                                                         return node.name == name &&
                                                                                node.is(AccessibleNode::State::showing);
                                                                     })
                                    : std::nullopt;
            return found && desktop().accessibility().activate(*found);
        });
    }

private:
    std::optional<ChildProcess> keyring_;
};

} // namespace quillane::live
