// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/agent/LiveAgent.hpp"
#include "desktop/fixture/LiveDesktopTest.hpp"
#include "desktop/fixture/XClients.hpp"

namespace quillane::live {

/// An editor to test in: one of each of the two toolkits that most Linux programs use.
struct Editor {
    const char* name;
    std::vector<std::string> command;
};

/// Its name in a test's messages.
void PrintTo(const Editor& editor, std::ostream* out);

/// For testing::ValuesIn and test names.
[[nodiscard]] const std::vector<Editor>& editors();

/// A test with the agent on a live desktop. The agent's state is part of each failure. An exception ends the test if a
/// precondition cannot be met.
class AgentTest : public LiveDesktopTest {
protected:
    void TearDown() override;

    /// Starts the agent and waits until it observes the keyboard. `more` is added to its environment.
    void startAgent(const Environment& more = {});

    [[nodiscard]] LiveAgent& agent() { return *agent_; }

    /// Ends the agent as SIGTERM does.
    ExitStatus endAgent();

    /// Starts an editor with an empty document, in front, ready for typing.
    void startEditor(const Editor& editor);

    /// Starts an editor with a document that has this text.
    void startEditorWith(const std::vector<std::string>& command, const std::string& text);

    [[nodiscard]] ChildProcess& editor() { return *editor_; }

    /// The text in the editor, or a note that there is none.
    [[nodiscard]] std::string editorText();

    /// Waits until the editor contains exactly this text.
    void expectEditorText(const std::string& text);

    /// The agent starts, an editor is in front, and the source in use is Hebrew (or English).
    void startTyping(const Editor& editor, bool hebrew = true);

    [[nodiscard]] std::string describeState() override;

private:
    std::optional<LiveAgent> agent_;
    std::optional<ChildProcess> editor_;
};

/// A live test that runs once in each editor.
class AgentEditorTest : public AgentTest, public ::testing::WithParamInterface<Editor> {};

/// Registers the tests of a suite for both editors.
#define QUILLANE_IN_BOTH_EDITORS(suite)                                                                                \
    INSTANTIATE_TEST_SUITE_P(In, suite, testing::ValuesIn(quillane::live::editors()),                                  \
                             [](const auto& parameter) { return std::string(parameter.param.name); })

} // namespace quillane::live
