// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/fixture/LiveDesktop.hpp"

#include <nlohmann/json.hpp>

namespace quillane::live {

/// The file of the agent's executable that this build has made.
[[nodiscard]] std::filesystem::path agentExecutable();

/// The agent as a program of a live desktop, observed only through its commands and its settings file.
class LiveAgent {
public:
    /// Starts it and waits until it answers and, if `waitForMonitor`, until it observes the keyboard.
    [[nodiscard]] static tl::expected<LiveAgent, std::string> start(LiveDesktop& desktop, bool waitForMonitor = true,
                                                                    const Environment& more = {});

    [[nodiscard]] ChildProcess& process() { return process_; }

    /// Runs `quillane ARGUMENT...` beside it, to the end.
    [[nodiscard]] CommandResult command(std::vector<std::string> arguments) const;

    /// What `quillane status --json` says now; null when it does not answer.
    [[nodiscard]] nlohmann::json status() const;

    /// Waits until the condition holds for the status.
    [[nodiscard]] bool waitForStatus(const std::function<bool(const nlohmann::json&)>& condition,
                                     std::chrono::milliseconds limit = defaultTimeout) const;

    /// Brings a window of the process to the front, and waits until the agent knows.
    [[nodiscard]] bool bringToFront(pid_t pid) const;

    /// Locks the group of the layouts and waits until the agent reports the source as right-to-left, or not.
    [[nodiscard]] bool useGroup(int group, bool isRightToLeft) const;

private:
    LiveAgent(LiveDesktop& desktop, ChildProcess process) : desktop_(&desktop), process_(std::move(process)) {}

    LiveDesktop* desktop_;
    ChildProcess process_;
};

/// The agent's settings file on a desktop: must be written before it starts. `entries` are the property list's keys
/// with their values as XML, for example {"ShiftEnglishEnabled", "<false/>"}.
[[nodiscard]] bool writeAgentSettings(const LiveDesktop& desktop, const std::map<std::string, std::string>& entries);

/// Writes settings in which the user has chosen a language of the interface ("en", "he", "ar"), and nothing else.
[[nodiscard]] bool chooseAgentLanguage(const LiveDesktop& desktop, const std::string& language);

} // namespace quillane::live
