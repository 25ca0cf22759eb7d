// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Url.hpp"

#include "core/support/HostName.hpp"
#include "core/support/Utf8.hpp"

#include <uriparser/Uri.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace quillane::core {

namespace {

/// Frees what the parser allocated.
class ParsedUri {
public:
    ParsedUri() = default;
    ParsedUri(const ParsedUri&) = delete;
    ParsedUri& operator=(const ParsedUri&) = delete;

    ~ParsedUri() { uriFreeUriMembersA(&uri_); }

    UriUriA* get() { return &uri_; }

    UriUriA* operator->() { return &uri_; }

private:
    UriUriA uri_{};
};

std::optional<std::string> text(const UriTextRangeA& range) {
    return range.first == nullptr ? std::nullopt : std::optional(std::string(range.first, range.afterLast));
}

bool isAlphanumeric(char character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z');
}

/// RFC 3986: unreserved and sub-delims, which both reg-name and pchar take unencoded.
bool isPlain(char character) {
    return isAlphanumeric(character) || std::string_view("-._~!$&'()*+,;=").find(character) != std::string_view::npos;
}

bool isAscii(char character) {
    return static_cast<unsigned char>(character) < 0x80;
}

bool isZoneCharacter(char character) {
    return isAlphanumeric(character) || std::string_view("-._~").find(character) != std::string_view::npos;
}

bool isPathCharacter(char character) {
    return isPlain(character) || character == ':' || character == '@';
}

std::string encoded(std::string_view bytes, bool (*isAllowed)(char)) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (const char character : bytes) {
        if (isAllowed(character)) {
            result += character;
        } else {
            const auto value = static_cast<unsigned char>(character);
            result += '%';
            result += digits[value >> 4U];
            result += digits[value & 15U];
        }
    }
    return result;
}

int hexValue(char digit) {
    return digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10;
}

enum class Slashes { decode, keepEncoded };

/// The text must be what the parser accepted: two hexadecimal digits follow every percent sign.
std::string decoded(std::string_view text, Slashes slashes) {
    std::string result;
    for (std::size_t position = 0; position < text.size(); ++position) {
        char character = text[position];
        if (character == '%') {
            character = static_cast<char>(hexValue(text[position + 1]) * 16 + hexValue(text[position + 2]));
            if (character == '/' && slashes == Slashes::keepEncoded) {
                result += "%2F";
            } else {
                result += character;
            }
            position += 2;
        } else {
            result += character;
        }
    }
    return result;
}

/// A name that every parser of the URL reads alike.
bool isUsableName(std::string_view name) {
    return isValidUtf8(name) && std::ranges::none_of(name, [](char character) {
               const auto value = static_cast<unsigned char>(character);
               return value <= 0x20 || value == 0x7F ||
                      std::string_view(":/?#[]@\\%<>\"^`{|}").find(character) != std::string_view::npos;
           });
}

/// Takes the zone out of the brackets of an IPv6 address, because the parser's grammar has none. The zone is empty
/// where nothing follows the percent sign.
std::optional<std::string> takeZone(std::string& text) {
    const auto bracket = text.find('[');
    const auto close = text.find(']', bracket);
    const auto percent = text.substr(0, close).find('%', bracket);
    if (bracket == std::string::npos || close == std::string::npos || percent == std::string::npos) {
        return std::nullopt;
    }
    auto zone = text.substr(percent + 1, close - percent - 1);
    text.erase(percent, close - percent);
    if (zone.starts_with("25")) { // the encoded percent sign
        zone.erase(0, 2);
    }
    return zone;
}

/// fe80::/10 (RFC 4291, section 2.5.6).
bool isLinkLocal(const UriIp6& address) {
    return address.data[0] == 0xFE && (address.data[1] & 0xC0U) == 0x80;
}

std::string path(const UriUriA& uri, bool hasAuthority) {
    std::string result;
    for (const auto* segment = uri.pathHead; segment != nullptr; segment = segment->next) {
        if (segment != uri.pathHead || hasAuthority || uri.absolutePath == URI_TRUE) {
            result += '/';
        }
        result.append(segment->text.first, segment->text.afterLast);
    }
    if (uri.pathHead == nullptr && uri.absolutePath == URI_TRUE) {
        result = "/";
    }
    return result;
}

} // namespace

std::optional<UrlComponents> UrlComponents::parse(std::string_view input) {
    if (input.size() > maximumBytes) {
        return std::nullopt;
    }
    std::string address(input); // outlives what is parsed of it
    auto zone = takeZone(address);
    ParsedUri uri;
    const char* position = nullptr;
    if (uriParseSingleUriExA(uri.get(), address.data(), address.data() + address.size(), &position) != URI_SUCCESS) {
        return std::nullopt;
    }
    if (zone && (uri->hostData.ip6 == nullptr || !isLinkLocal(*uri->hostData.ip6) || zone->empty() ||
                 !std::ranges::all_of(*zone, isZoneCharacter))) {
        return std::nullopt;
    }
    UrlComponents result;
    result.zone = std::move(zone);
    result.scheme = text(uri->scheme);
    if (auto userInfo = text(uri->userInfo)) {
        const auto colon = userInfo->find(':');
        result.user = userInfo->substr(0, colon);
        if (colon != std::string::npos) {
            result.password = userInfo->substr(colon + 1);
        }
    }
    result.host = text(uri->hostText);
    if (result.host && uri->hostData.ip6 == nullptr) {
        result.host = decoded(*result.host, Slashes::decode);
        if (uri->hostData.ipFuture.first != nullptr || !isUsableName(*result.host)) {
            return std::nullopt;
        }
    }
    if (const auto port = text(uri->portText); port && !port->empty()) {
        std::uint16_t value = 0;
        const auto [end, error] = std::from_chars(port->data(), port->data() + port->size(), value);
        if (error != std::errc() || end != port->data() + port->size()) {
            return std::nullopt;
        }
        result.port = value;
    }
    result.percentEncodedPath = core::path(*uri.get(), result.host.has_value());
    result.query = text(uri->query);
    result.fragment = text(uri->fragment);
    return result;
}

std::optional<UrlComponents> UrlComponents::parseInternational(std::string_view text) {
    const auto slashes = text.find("//");
    if (slashes == std::string_view::npos) {
        return parse(text);
    }
    const auto begin = slashes + 2;
    const auto end = std::min(text.find_first_of("/?#", begin), text.size());
    auto result = parse(std::string(text.substr(0, begin))
                            .append(encoded(text.substr(begin, end - begin), isAscii))
                            .append(text.substr(end)));
    if (result && result->host && !std::ranges::all_of(*result->host, isAscii)) {
        result->host = asciiHostName(*result->host);
        return result->host ? result : std::nullopt;
    }
    return result;
}

std::string UrlComponents::path() const {
    return decoded(percentEncodedPath, Slashes::keepEncoded);
}

void UrlComponents::appendPathSegment(std::string_view name) {
    percentEncodedPath += '/' + encoded(name, isPathCharacter);
}

std::optional<Url> UrlComponents::url() const {
    if (!scheme || (host ? !percentEncodedPath.empty() && !percentEncodedPath.starts_with('/')
                         : user || port || percentEncodedPath.starts_with("//"))) {
        return std::nullopt;
    }
    std::string result = *scheme + ':';
    if (host) {
        result += "//";
        if (user) {
            result += *user;
            result += password ? ':' + *password : "";
            result += '@';
        }
        result += host->find(':') == std::string::npos ? encoded(*host, isPlain)
                                                       : '[' + *host + (zone ? "%25" + *zone : "") + ']';
        result += port ? ':' + std::to_string(*port) : "";
    }
    result += percentEncodedPath;
    result += query ? '?' + *query : "";
    result += fragment ? '#' + *fragment : "";
    return Url(std::move(result));
}

std::optional<Url> Url::parse(std::string_view text) {
    const auto components = UrlComponents::parse(text);
    return components && components->scheme ? std::optional(Url(std::string(text))) : std::nullopt;
}

Url Url::fromFilePath(const std::filesystem::path& path) {
    return Url("file://" + encoded(path.native(), [](char c) { return c == '/' || isPathCharacter(c); }));
}

std::optional<std::filesystem::path> Url::filePath() const {
    const auto components = UrlComponents::parse(text_);
    if (!components || !components->scheme || lowercased(*components->scheme) != "file" || components->query ||
        components->fragment) {
        return std::nullopt;
    }
    const auto host = lowercased(components->host.value_or(""));
    const auto path = decoded(components->percentEncodedPath, Slashes::decode);
    const auto slashes = [](std::string_view text) { return std::ranges::count(text, '/'); };
    if ((!host.empty() && host != "localhost") || !path.starts_with('/') || path.find('\0') != std::string::npos ||
        slashes(path) != slashes(components->percentEncodedPath)) {
        return std::nullopt;
    }
    return std::filesystem::path(path);
}

} // namespace quillane::core
