// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quillane::core {

/// An absolute URL that RFC 3986 accepts.
class Url {
public:
    /// The URL in this text, or none. Nothing is trimmed, encoded or corrected.
    [[nodiscard]] static std::optional<Url> parse(std::string_view text);

    /// The file URL of an absolute path of any bytes.
    [[nodiscard]] static Url fromFilePath(const std::filesystem::path& path);

    [[nodiscard]] const std::string& absoluteString() const { return text_; }

    /// The path of a file URL of this machine, none for any other URL. Encoded slashes and NUL are refused.
    [[nodiscard]] std::optional<std::filesystem::path> filePath() const;

    bool operator==(const Url&) const = default;

private:
    friend struct UrlComponents;

    explicit Url(std::string text) : text_(std::move(text)) {}

    std::string text_;
};

/// The parts of a URL or of a relative reference (RFC 3986, section 3). User, password, path, query and fragment are as
/// they were written, the host is decoded.
struct UrlComponents {
    /// Longer texts are not parsed: no typed address and no path that a system accepts is longer.
    static constexpr std::size_t maximumBytes = 16384;

    std::optional<std::string> scheme;
    std::optional<std::string> user;
    std::optional<std::string> password;
    /// A name or address without brackets. It is an IPv6 address exactly if it contains ":".
    std::optional<std::string> host;
    /// The network interface that a link-local IPv6 address belongs to, by its name or number (RFC 6874).
    std::optional<std::string> zone;
    std::optional<std::uint16_t> port;
    std::string percentEncodedPath;
    std::optional<std::string> query;
    std::optional<std::string> fragment;

    /// The parts of the text. Stricter than the grammar where it allows what cannot be used: a port above 65535, an IP
    /// address of a version to come, a zone of any but a link-local address, and a host that is not text or that hides
    /// delimiters, spaces or controls in percent-encoding. A zone may also follow a bare percent sign, as other
    /// programs write it.
    [[nodiscard]] static std::optional<UrlComponents> parse(std::string_view text);

    /// The same for an address whose host name may be in any script, whether or not it is percent-encoded: the host is
    /// the name in ASCII.
    [[nodiscard]] static std::optional<UrlComponents> parseInternational(std::string_view text);

    /// The path decoded, except encoded slashes, which are not separators.
    [[nodiscard]] std::string path() const;

    /// Adds "/" and one segment of any bytes, encoded.
    void appendPathSegment(std::string_view name);

    /// The URL of these parts; none when they do not make one, such as a host with a path that does not begin with a
    /// slash.
    [[nodiscard]] std::optional<Url> url() const;
};

} // namespace quillane::core
