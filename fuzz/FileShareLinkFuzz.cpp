// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Answers of file servers: whatever is accepted leads to the same scheme, host and port, inside the server's path. The
// first byte chooses the server, the second the status, the rest is the body.
#include "core/fileshare/FileShareProtocol.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

using namespace quillane::core;

namespace {

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

const FileShareServer& serverOf(std::uint8_t choice) {
    static const std::array servers{FileShareServer::validating("https://host").value(),
                                    FileShareServer::validating("https://host:8443/up").value(),
                                    FileShareServer::validating("http://[::1]:80/a%20b").value(),
                                    FileShareServer::validating("http://10.0.0.1").value()};
    return servers[choice % servers.size()];
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const auto& server = serverOf(data[0]);
    const int status = 195 + data[1] % 110;
    const auto body = std::as_bytes(std::span(data, size)).subspan(2);
    const auto link = fileShareProtocol::link(body, status, server);
    require(link || link.error() == FileShareError::invalidResponse ||
            link.error() == FileShareError::httpStatus(status));
    if (!link) {
        return 0;
    }
    const auto parts = UrlComponents::parse(link->absoluteString());
    require(status >= 200 && status <= 299 && body.size() <= fileShareProtocol::maximumAnswerBytes);
    require(parts && parts->scheme && parts->host);
    require(!parts->user && !parts->password && !parts->query && !parts->fragment);
    require(parts->port.value_or(FileShareServer::defaultPort(server.scheme())) == server.port());
    require(parts->path().starts_with(server.path() + '/'));
    require(fileShareProtocol::link(std::as_bytes(std::span(link->absoluteString())), status, server) == *link);
    return 0;
}
