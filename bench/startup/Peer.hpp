// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/agent/LiveAgent.hpp"

#include <functional>
#include <string>
#include <vector>

namespace quillane::live {

/// A program that sits in the tray and answers its own command, to be measured on a live desktop.
struct Peer {
    std::string name;
    std::vector<std::string> server; ///< starts it, in the foreground
    std::vector<std::string> client; ///< succeeds once it answers
    std::string windowClass;         ///< of its tray icon
};

/// The agent, and the tray program that it is compared with.
[[nodiscard]] const std::vector<Peer>& peers();

/// Smaller programs that keep a clipboard history. They answer no command of their own.
[[nodiscard]] const std::vector<Peer>& smallPeers();

[[nodiscard]] double median(std::vector<double> values);

/// Ends the measurement with a message when something does not happen.
void must(bool condition, const std::string& what);

} // namespace quillane::live
