// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/agent/LiveAgent.hpp"
#include "servers/NginxServer.hpp"
#include "soak/Copies.hpp"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillane::soak {

/// A live desktop with everything that the agent works with: a keyring, a file server, a program that copies and two
/// editors. What cannot be made throws, as `live::require` does.
class SoakDesktop {
public:
    static constexpr std::size_t historyLimit = 100; ///< entries, so that the history is full soon

    /// With a small disk, the history's folder lies on a file system of its own.
    enum class Disk { shared, small };

    /// An adjustable clock is set by a file, for the agent only.
    enum class Clock { real, adjustable };

    SoakDesktop(Disk disk, Clock clock);
    ~SoakDesktop();

    [[nodiscard]] live::LiveDesktop& desktop() { return *desktop_; }

    [[nodiscard]] live::LiveAgent& agent() { return *agent_; }

    [[nodiscard]] Copies& copies() { return *copies_; }

    [[nodiscard]] const servers::NginxServer& server() const { return *server_; }

    [[nodiscard]] bool hasSmallDisk() const { return disk_ == Disk::small; }

    [[nodiscard]] std::filesystem::path historyFolder() const;

    /// Where libfaketime reads how far the clock is off; empty for the real clock, and where it is not installed.
    [[nodiscard]] std::filesystem::path clockFile() const;

    /// Starts the agent and waits until it records copies.
    void startAgent();

    /// Starts it and does not wait.
    [[nodiscard]] live::ChildProcess launchAgent();

    void startKeyring();

    void endKeyring();

    /// Those that have ended are started again, with an empty document each.
    [[nodiscard]] std::array<pid_t, 2> editors();

    [[nodiscard]] live::ChildProcess& editor(std::size_t index) { return *editors_.at(index); }

    void endEditors();

    /// Throws unless keys reach an editor, Shift types English in Hebrew, and no key is down.
    void checkKeyboard(std::size_t editor);

    /// Throws unless every copy that is due can be read in the history, nothing secret is in it, and no history was set
    /// aside.
    void checkHistory();

private:
    [[nodiscard]] std::string readerOutput(std::vector<std::string> arguments);
    [[nodiscard]] live::Environment agentEnvironment() const;
    void waitForText(pid_t editor, const std::string& expected);

    Disk disk_;
    std::filesystem::path clockLibrary_; ///< empty for the real clock
    std::unique_ptr<live::LiveDesktop> desktop_;
    std::optional<servers::NginxServer> server_;
    std::optional<live::ChildProcess> keyring_;
    std::optional<Copies> copies_;
    std::optional<live::LiveAgent> agent_;
    std::array<std::optional<live::ChildProcess>, 2> editors_;
    std::string key_; ///< of the history, in hexadecimal digits, once it is known
};

} // namespace quillane::soak
