// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AgentControl.hpp"

#include <tl/expected.hpp>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

namespace quillane {

/// Where this user's agent listens: `quillane.sock` in $XDG_RUNTIME_DIR on Linux, in the user's temporary folder on
/// macOS, and without either in a folder of the user below /tmp. A runtime folder that others could enter is not used.
[[nodiscard]] std::filesystem::path controlSocketPath();

enum class ClaimError {
    alreadyRunning, ///< another agent of this user holds the socket
    unavailable,    ///< the folder or the socket cannot be made, or others could enter the folder
};

/// The running agent's end of the control socket: a Unix stream socket with mode 0600, answering only processes of the
/// same user (SO_PEERCRED, getpeereid). One request a connection: one line of JSON of at most 64 KiB in, one line out.
/// A lock beside the socket (flock(2)) ensures that there is one agent per user and that a socket left behind is
/// replaced.
class ControlSocket final : public AgentControl {
public:
    /// Takes the socket. May be called before Qt's application object exists; requests wait until `setHandler`.
    [[nodiscard]] static tl::expected<std::unique_ptr<ControlSocket>, ClaimError>
    claim(const std::filesystem::path& path);

    /// Removes the socket: a later start finds none.
    ~ControlSocket() override;

    /// Needs Qt's application object.
    void setHandler(Handler handler) override;

private:
    class Server;
    explicit ControlSocket(std::unique_ptr<Server> server);
    std::unique_ptr<Server> server_;
};

/// Asks the running agent and waits for its answer, up to the timeout. An error when there is none
/// (`no_such_file_or_directory`, `connection_refused`), when it does not answer in time (`timed_out`) or with nonsense
/// (`bad_message`), and, before anything is sent, when another user may listen (`permission_denied`).
[[nodiscard]] tl::expected<ControlReply, std::errc>
sendControlRequest(const std::filesystem::path& path, const ControlRequest& request, std::chrono::milliseconds timeout);

} // namespace quillane
