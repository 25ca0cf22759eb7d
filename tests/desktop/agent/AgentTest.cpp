// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"

#include <ostream>

namespace quillane::live {

const std::vector<Editor>& editors() {
    static const std::vector<Editor> all{{"Gtk", {"mousepad", "--disable-server"}},
                                         {"Qt", {"featherpad", "--standalone"}}};
    return all;
}

void PrintTo(const Editor& editor, std::ostream* out) {
    *out << editor.command.front();
}

void AgentTest::TearDown() {
    LiveDesktopTest::TearDown(); // keeps the evidence while everything still runs
    editor_.reset();
    agent_.reset();
}

void AgentTest::startAgent(const Environment& more) {
    agent_ = required(LiveAgent::start(desktop(), true, more));
}

ExitStatus AgentTest::endAgent() {
    return agent_->process().end();
}

void AgentTest::startEditor(const Editor& editor) {
    startEditorWith(editor.command, "");
}

void AgentTest::startEditorWith(const std::vector<std::string>& command, const std::string& text) {
    editor_ = required(desktop().startApplication(command));
    require(waitUntil([&] { return desktop().editorText(editor_->pid()) == text; }),
            "no editor with the text has the focus");
}

std::string AgentTest::editorText() {
    return desktop().editorText(editor_->pid()).value_or("(no focused editor)");
}

void AgentTest::expectEditorText(const std::string& text) {
    std::string last;
    EXPECT_TRUE(waitUntil([&] { return (last = editorText()) == text; }))
        << "expected: " << text << "\nin the editor: " << last;
}

void AgentTest::startTyping(const Editor& editor, bool hebrew) {
    startAgent();
    startEditor(editor);
    require(agent().useGroup(hebrew ? 1 : 0, hebrew), "the agent does not see the input source");
}

std::string AgentTest::describeState() {
    return agent_ ? agent_->status().dump(2) : "(no agent)";
}

} // namespace quillane::live
