// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillane {

/// The request of a second start to the running agent.
struct ControlRequest {
    std::string command;                ///< for example "status"
    std::vector<std::string> arguments; ///< files as file URLs

    bool operator==(const ControlRequest&) const = default;
};

struct ControlReply {
    bool ok = true;
    std::string text;     ///< for standard output, or the error for standard error
    bool problem = false; ///< the text is the answer, but what it says makes the command fail

    bool operator==(const ControlReply&) const = default;
};

/// Where the running agent receives requests from later starts by the same user. Main thread.
class AgentControl {
public:
    using Handler = std::function<ControlReply(const ControlRequest&)>;

    virtual ~AgentControl() = default;

    /// Answers requests from now on, those that arrived earlier included.
    virtual void setHandler(Handler handler) = 0;
};

} // namespace quillane
