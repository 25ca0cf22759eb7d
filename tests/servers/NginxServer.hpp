// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "support/ChildProcess.hpp"
#include "support/Files.hpp"
#include "support/TemporaryFolder.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace quillane::servers {

/// nginx as a file server, on 127.0.0.1 and [::1], with a certificate from a private authority for "localhost" and both
/// addresses. Below /drop/box it serves under a path, below /small it accepts at most 1000 bytes. Ended with this
/// object.
class NginxServer {
public:
    struct Ports {
        std::uint16_t http = 0;  ///< HTTP/1.1
        std::uint16_t https = 0; ///< HTTP/1.1 over TLS; 127.0.0.1 only
        std::uint16_t http2 = 0; ///< HTTP/2 over TLS
    };

    /// With the port of another server on 127.0.0.1, everything below /forget is streamed to that one through memory:
    /// for measuring.
    [[nodiscard]] static tl::expected<NginxServer, std::string> start(std::optional<std::uint16_t> passedOnTo = {});

    /// The server of docs/share-server.md, unchanged, on the port for HTTP/2, where 127.0.0.1 and not [::1] may upload.
    [[nodiscard]] static tl::expected<NginxServer, std::string> startDocumented();

    [[nodiscard]] const Ports& ports() const { return ports_; }

    /// The certificate of the authority, PEM.
    [[nodiscard]] std::filesystem::path authority() const { return folder_.path() / "authority.pem"; }

    /// One line a request that has been answered: protocol, scheme, method, URI, status.
    [[nodiscard]] std::string accessLog() const { return live::readFile(folder_.path() / "access.log"); }

    [[nodiscard]] pid_t pid() const { return process_.pid(); }

private:
    using Configuration = std::function<std::string(const std::filesystem::path& folder, const Ports& ports)>;

    static tl::expected<NginxServer, std::string> start(const Configuration& configuration);

    NginxServer(live::TemporaryFolder folder, live::ChildProcess process, Ports ports)
        : folder_(std::move(folder)), process_(std::move(process)), ports_(ports) {}

    live::TemporaryFolder folder_;
    live::ChildProcess process_;
    Ports ports_;
};

} // namespace quillane::servers
