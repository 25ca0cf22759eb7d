// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

namespace quillane {

/// Turns SIGTERM, SIGINT and SIGHUP (signal(7)) into one call on the main thread, so that a logout or a kill ends the
/// agent as its own Quit command does. The first signal calls back; a second one while the agent is ending kills at
/// once.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> callback);
    ~TerminationSignals();

    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    class Watcher;
    std::unique_ptr<Watcher> watcher_;
};

} // namespace quillane
