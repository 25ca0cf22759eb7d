// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/agent/AgentTest.hpp"

namespace quillane::live {

/// Direction chords in a stand-in for an application of Microsoft Office, with the interface of the agent in English.
class LiveOffice : public AgentTest {
protected:
    void TearDown() override;

    /// Starts the agent, and the program with a cursor in one of its fields.
    void start(const std::string& program, const std::vector<std::string>& options = {});

    /// What happened in the program so far, of one kind.
    [[nodiscard]] std::vector<nlohmann::json> events(const std::string& kind) const;

    /// Waits until this many events of a kind have happened.
    void expectCount(const std::string& kind, std::size_t count) const;

    /// Waits until this is the agent's last message.
    void expectSaid(const std::string& text);

    /// Fails if the agent has shown any message.
    void expectSaidNothing();

    void turnRight() { desktop().keyboard().chord({Key::leftControl, Key::rightShift}); }

    void turnLeft() { desktop().keyboard().chord({Key::leftControl, Key::leftShift}); }

    [[nodiscard]] pid_t pid() const { return process_->pid(); }

private:
    std::optional<ChildProcess> process_;
    std::filesystem::path output_;
};

} // namespace quillane::live
