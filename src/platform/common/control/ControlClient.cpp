// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/FileDescriptor.hpp"
#include "platform/common/control/ControlProtocol.hpp"
#include "platform/common/control/ControlSocket.hpp"
#include "platform/common/control/ControlTrust.hpp"

#include <algorithm>
#include <array>
#include <cerrno>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace quillane {

namespace {

using Clock = std::chrono::steady_clock;

/// Waits until the socket is ready for the events, false when the deadline passes first.
bool waitFor(int fd, short events, Clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd entry{fd, events, 0};
        const int ready = ::poll(&entry, 1, static_cast<int>(std::max<long long>(left, 0)));
        if (ready > 0) {
            return true;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

} // namespace

tl::expected<ControlReply, std::errc> sendControlRequest(const std::filesystem::path& path,
                                                         const ControlRequest& request,
                                                         std::chrono::milliseconds timeout) {
    const auto deadline = Clock::now() + timeout;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.native().size() >= sizeof address.sun_path) {
        return tl::unexpected(std::errc::filename_too_long);
    }
    std::ranges::copy(path.native(), address.sun_path);
    const core::FileDescriptor fd(::socket(AF_UNIX, SOCK_STREAM, 0));
    if (!fd || ::connect(fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        return tl::unexpected(static_cast<std::errc>(errno));
    }
    // A name in a folder that others may change, or a listener of another user, is not the agent.
    if (!isPrivateFolder(path.parent_path()) || !isPeerThisUser(fd.get())) {
        return tl::unexpected(std::errc::permission_denied);
    }
    auto output = control::encode(request) + "\n";
    while (!output.empty()) {
        if (!waitFor(fd.get(), POLLOUT, deadline)) {
            return tl::unexpected(std::errc::timed_out);
        }
        const auto count = ::send(fd.get(), output.data(), output.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno != EAGAIN && errno != EINTR) {
            return tl::unexpected(static_cast<std::errc>(errno));
        }
        output.erase(0, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    std::string input;
    while (input.find('\n') == std::string::npos && input.size() <= control::maximumLineBytes) {
        if (!waitFor(fd.get(), POLLIN, deadline)) {
            return tl::unexpected(std::errc::timed_out);
        }
        std::array<char, 4096> buffer{};
        const auto count = ::recv(fd.get(), buffer.data(), buffer.size(), 0);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return tl::unexpected(std::errc::bad_message);
        }
        input.append(buffer.data(), static_cast<std::size_t>(count));
    }
    const auto reply = control::decodeReply(std::string_view(input).substr(0, input.find('\n')));
    return reply ? tl::expected<ControlReply, std::errc>(*reply) : tl::unexpected(std::errc::bad_message);
}

} // namespace quillane
