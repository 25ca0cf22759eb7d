// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Addresses of file servers: whatever is accepted is a plain address that stays as it is.
#include "core/fileshare/FileShareServer.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using quillane::core::FileShareServer;
using quillane::core::UrlComponents;

namespace {

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto server = FileShareServer::validating({reinterpret_cast<const char*>(data), size});
    if (!server) {
        return 0;
    }
    const auto parts = UrlComponents::parse(server->url().absoluteString());
    require(parts.has_value());
    require(!parts->user && !parts->password && !parts->query && !parts->fragment);
    require(parts->scheme == server->scheme() && parts->host == server->host() && !server->host().empty());
    require(!server->path().ends_with('/'));
    require(server->scheme() == "https" || server->scheme() == "http");
    require(FileShareServer::validating(server->url().absoluteString()) == server);
    require(!server->displayName().empty());
    return 0;
}
