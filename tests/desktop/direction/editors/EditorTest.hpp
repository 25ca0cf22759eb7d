// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/agent/AgentTest.hpp"
#include "desktop/direction/editors/LiveDocument.hpp"

#include <ostream>
#include <vector>

namespace quillane::live {

using nlohmann::json;
using namespace std::chrono_literals;

/// An application, with the agent's name and message for it.
struct Target {
    std::string name;
    std::string bundleID;
    std::string bodyMenu;
    std::string hint;
};

inline const Target safari{"Safari", "com.apple.Safari", "Paragraph Direction",
                           "Place the cursor in an editable text field on the website"};
inline const Target textEdit{"TextEdit", "com.apple.TextEdit", "Writing Direction",
                             "Place the cursor in the TextEdit document body"};
inline const Target notes{"Notes", "com.apple.Notes", "Writing Direction", "Place the cursor in the Notes note body"};
inline const Target mail{"Mail", "com.apple.mail", "Paragraph Direction",
                         "Place the cursor in the Mail message body or subject"};
inline const std::vector<Target> targets{safari, textEdit, notes, mail};

inline void PrintTo(const Target& target, std::ostream* out) {
    *out << target.name;
}

/// Direction chords in each application, with the interface of the agent in English.
class EditorTest : public AgentTest {
protected:
    void startIn(const Target& target, const std::vector<std::string>& options = {}) {
        require(chooseAgentLanguage(desktop(), "en"), "the language in the settings");
        startAgent();
        open(target, options);
    }

    void open(const Target& target, const std::vector<std::string>& options = {}) {
        document_.emplace(required(LiveDocument::start(desktop(), target.bundleID, options)));
        require(
            agent().waitForStatus([](const auto& status) { return status.at("monitorRunning").template get<bool>(); }),
            "the agent observes the keyboard");
    }

    void TearDown() override {
        AgentTest::TearDown();
        document_.reset();
    }

    [[nodiscard]] json state() const { return document_->state(); }

    void expectSaid(const std::string& text) {
        EXPECT_TRUE(agent().waitForStatus([&](const auto& status) { return status.at("lastAction") == text; }))
            << agent().status();
    }

    /// Waits until the document has this state.
    void expectState(const std::string& key, const json& value) {
        EXPECT_TRUE(waitUntil([&] { return state().at(key) == value; })) << key << ": " << state();
    }

    void expectUntouched() {
        expectState("menu", false);
        expectState("text", "first line\nsecond line");
        expectState("directions", {"ltr", "ltr", "ltr"});
        expectState("chosen", json::array());
    }

    void expectNoMenuAskedFor() {
        EXPECT_TRUE(holdsFor(500ms, [&] { return state().at("asked") == 0; })) << state();
    }

    void turnRight() { desktop().keyboard().chord({Key::leftControl, Key::rightShift}); }

    void turnLeft() { desktop().keyboard().chord({Key::leftControl, Key::leftShift}); }

    std::optional<LiveDocument> document_;
};

/// What a menu does when it is requested, and what becomes of the chord.
struct MenuCase {
    std::string name;
    std::string mode;
    std::string said;
    bool isApplied = false;
};

inline void PrintTo(const MenuCase& menu, std::ostream* out) {
    *out << menu.name;
}

} // namespace quillane::live
