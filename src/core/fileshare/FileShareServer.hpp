// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Url.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillane::core {

class UserDefaults;

/// The checked address of a server that accepts files by PUT.
class FileShareServer {
public:
    /// String: the address of a server other than the standard one.
    static constexpr std::string_view defaultsKey = "FileShareServer";

    /// The server at an address that was typed. None when it is not a URL, has another scheme than https and http, no
    /// host, or a user, password, query or fragment, and for http when the host is not on the local network. Blanks
    /// around the address and direction marks in it are ignored; a name in any script becomes ASCII (UTS #46).
    [[nodiscard]] static std::optional<FileShareServer> validating(std::string_view address);

    /// The server that is used unless another one is saved; the build sets it (QUILLANE_DEFAULT_SHARE_SERVER).
    [[nodiscard]] static const FileShareServer& standard();

    /// The saved server, or the standard one when none is saved or the stored text is not a valid address.
    [[nodiscard]] static FileShareServer saved(const UserDefaults& defaults);

    /// Makes this the saved server. The standard one is saved by removing the key, so that a later version's standard
    /// server takes effect.
    void save(UserDefaults& defaults) const;

    /// Whether this is the standard server of a build that names no real one. No such server can exist.
    [[nodiscard]] bool isPlaceholder() const { return isReservedForExamples(host_) && *this == standard(); }

    /// Whether this lower-case host is reserved for examples: ".example", "example.com" and their like (RFC 2606).
    [[nodiscard]] static bool isReservedForExamples(std::string_view host);

    /// Whether only machines of the local network can have this lower-case host: names without a dot and names in
    /// ".local", private, loopback and link-local addresses (RFC 1918, RFC 3927, RFC 4193, RFC 4291).
    [[nodiscard]] static bool isLocalNetwork(std::string_view host);

    /// The address without trailing slashes, the scheme and the name in lower case, with the zone of an IPv6 address.
    [[nodiscard]] const Url& url() const { return url_; }

    /// "https" or "http".
    [[nodiscard]] const std::string& scheme() const { return scheme_; }

    /// A name in lower case, or an IP address. One that contains ":" is an IPv6 address as it was typed, without a
    /// zone.
    [[nodiscard]] const std::string& host() const { return host_; }

    /// The port of the address, or that of its scheme.
    [[nodiscard]] std::uint16_t port() const { return port_; }

    /// The path, decoded and without trailing slashes.
    [[nodiscard]] const std::string& path() const { return path_; }

    /// The address as users see it: the host, the port unless it is the scheme's, and the path.
    [[nodiscard]] std::string displayName() const;

    /// 443 for "https", else 80.
    [[nodiscard]] static std::uint16_t defaultPort(std::string_view scheme);

    bool operator==(const FileShareServer&) const = default;

private:
    FileShareServer(Url url, std::string scheme, std::string host, std::uint16_t port, std::string path);

    Url url_;
    std::string scheme_;
    std::string host_;
    std::uint16_t port_;
    std::string path_;
};

} // namespace quillane::core
