// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AgentControl.hpp"

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillane::commandLine {

/// Become the agent, or when one runs, show its settings window.
struct RunAgent {
    bool atLogin = false;
    bool operator==(const RunAgent&) const = default;
};

/// Ask the running agent.
struct SendRequest {
    ControlRequest request;
    bool operator==(const SendRequest&) const = default;
};

/// Ask the running agent what works and what does not; without one, look as far as that is possible.
struct Diagnose {
    bool json = false;
    bool operator==(const Diagnose&) const = default;
};

/// Have the agent share a file, starting it if it is not running. Without a file the user chooses one. With several,
/// the agent answers with an error.
struct ShareFiles {
    std::vector<std::string> paths; ///< as they were given
    bool operator==(const ShareFiles&) const = default;
};

struct ShowHelp {
    bool operator==(const ShowHelp&) const = default;
};

struct ShowVersion {
    bool operator==(const ShowVersion&) const = default;
};

/// The words are not a call of this program: `message` says why.
struct UsageError {
    std::string message;
    bool operator==(const UsageError&) const = default;
};

using Call = std::variant<RunAgent, SendRequest, Diagnose, ShareFiles, ShowHelp, ShowVersion, UsageError>;

/// Reads the words after the program's name, without those that macOS puts before them.
[[nodiscard]] Call parse(std::span<const std::string_view> words);

/// A command or option, as the usage text shows it.
struct Synopsis {
    std::string_view word;      ///< "status" or "--help"; empty for the program's name alone
    std::string_view shorthand; ///< a shorter word for the same, or empty
    std::string_view argument;  ///< the optional argument: "--json", "FILE" or empty
    std::string_view summary;   ///< English, because a terminal does not order mixed text reliably
};

/// Every command and option, in the order of the usage text.
[[nodiscard]] std::vector<Synopsis> synopses();

[[nodiscard]] std::string usage();

} // namespace quillane::commandLine
