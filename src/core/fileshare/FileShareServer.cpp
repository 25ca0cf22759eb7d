// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/fileshare/FileShareServer.hpp"

#include "core/preferences/UserDefaults.hpp"
#include "core/support/Text.hpp"
#include "core/support/Utf8.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace quillane::core {

namespace {

std::vector<std::string_view> piecesBetweenDots(std::string_view host) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const auto dot = host.find('.');
        pieces.push_back(host.substr(0, dot));
        if (dot == std::string_view::npos) {
            return pieces;
        }
        host.remove_prefix(dot + 1);
    }
}

/// The number of an IPv4 address that the piece writes: one to three decimal digits up to 255.
std::optional<unsigned> octet(std::string_view piece) {
    if (piece.empty() || piece.size() > 3 || !std::ranges::all_of(piece, [](char c) { return c >= '0' && c <= '9'; })) {
        return std::nullopt;
    }
    unsigned value = 0;
    for (const char digit : piece) {
        value = value * 10 + static_cast<unsigned>(digit - '0');
    }
    return value <= 255 ? std::optional(value) : std::nullopt;
}

bool isLocalIPv6(std::string_view host) {
    constexpr std::array prefixes{"fc", "fd", "fe8", "fe9", "fea", "feb"};
    const auto first = host.find_first_not_of("[]");
    const auto last = host.find_last_not_of("[]");
    const auto address = first == std::string_view::npos ? std::string_view() : host.substr(first, last - first + 1);
    return address == "::1" ||
           std::ranges::any_of(prefixes, [&](std::string_view prefix) { return address.starts_with(prefix); });
}

bool isLocalIPv4(unsigned first, unsigned second) {
    switch (first) {
    case 10:
    case 127:
        return true;
    case 169:
        return second == 254;
    case 172:
        return second >= 16 && second <= 31;
    case 192:
        return second == 168;
    default:
        return false;
    }
}

} // namespace

FileShareServer::FileShareServer(Url url, std::string scheme, std::string host, std::uint16_t port, std::string path)
    : url_(std::move(url)), scheme_(std::move(scheme)), host_(std::move(host)), port_(port), path_(std::move(path)) {}

std::optional<FileShareServer> FileShareServer::validating(std::string_view address) {
    const auto typed = withoutDirectionMarks(address);
    auto components = UrlComponents::parseInternational(trimmedOfWhiteSpace(typed));
    if (!components || !components->scheme || !components->host || components->host->empty()) {
        return std::nullopt;
    }
    components->scheme = lowercased(*components->scheme);
    if (components->scheme != "https" && components->scheme != "http") {
        return std::nullopt;
    }
    const auto lowercaseHost = lowercased(*components->host);
    if (components->user || components->password || components->query || components->fragment) {
        return std::nullopt;
    }
    if (components->scheme != "https" && !isLocalNetwork(lowercaseHost)) {
        return std::nullopt;
    }
    if (lowercaseHost.find(':') == std::string::npos) {
        components->host = lowercaseHost;
    }
    while (components->percentEncodedPath.ends_with('/')) {
        components->percentEncodedPath.pop_back();
    }
    auto path = components->path();
    auto url = components->url();
    if (!url || !isValidUtf8(path)) { // the path is shown to users
        return std::nullopt;
    }
    return FileShareServer(*std::move(url), *components->scheme, *components->host,
                           components->port.value_or(defaultPort(*components->scheme)), std::move(path));
}

const FileShareServer& FileShareServer::standard() {
    static const FileShareServer server = [] {
        auto valid = validating(QUILLANE_DEFAULT_SHARE_SERVER);
        if (!valid) {
            std::fputs("QUILLANE_DEFAULT_SHARE_SERVER is not a valid address: " QUILLANE_DEFAULT_SHARE_SERVER "\n",
                       stderr);
            std::abort();
        }
        return *std::move(valid);
    }();
    return server;
}

FileShareServer FileShareServer::saved(const UserDefaults& defaults) {
    const auto address = defaults.string(defaultsKey);
    return (address ? validating(*address) : std::nullopt).value_or(standard());
}

void FileShareServer::save(UserDefaults& defaults) const {
    if (*this == standard()) {
        defaults.removeObject(defaultsKey);
    } else {
        defaults.setObject(defaultsKey, url_.absoluteString());
    }
}

bool FileShareServer::isReservedForExamples(std::string_view host) {
    constexpr std::array domains{"example", "example.com", "example.net", "example.org"};
    return std::ranges::any_of(
        domains, [&](std::string_view domain) { return host == domain || host.ends_with('.' + std::string(domain)); });
}

bool FileShareServer::isLocalNetwork(std::string_view host) {
    if (host.ends_with(".local")) {
        return true;
    }
    if (host.find(':') != std::string_view::npos) {
        return isLocalIPv6(host);
    }
    const auto pieces = piecesBetweenDots(host);
    if (pieces.size() == 1) {
        return true; // a bare name is looked up on the local network only
    }
    if (pieces.size() != 4 || !std::ranges::all_of(pieces, [](auto piece) { return octet(piece).has_value(); })) {
        return false;
    }
    return isLocalIPv4(*octet(pieces[0]), *octet(pieces[1]));
}

std::string FileShareServer::displayName() const {
    auto name = host_.find(':') == std::string::npos ? host_ : '[' + host_ + ']';
    if (port_ != defaultPort(scheme_)) {
        name += ':' + std::to_string(port_);
    }
    return name + path_;
}

std::uint16_t FileShareServer::defaultPort(std::string_view scheme) {
    return scheme == "https" ? 443 : 80;
}

} // namespace quillane::core
