// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/FileReference.hpp"

#include "core/support/Url.hpp"

#include <algorithm>

namespace quillane::core {

namespace {

/// Whether a URL must have the character encoded. Controls are not: no program leaves them in a URL.
bool isToEncode(char c) {
    constexpr std::string_view printable = " \"<>[\\]^`{|}";
    return static_cast<unsigned char>(c) >= 0x80 || printable.find(c) != std::string_view::npos;
}

/// The end of the host, whose brackets hold an address.
std::size_t hostEnd(std::string_view url) {
    const auto scheme = std::min(url.find(':'), url.size());
    return url.substr(scheme).starts_with("://") ? url.find_first_of("/?#", scheme + 3) : 0;
}

/// The URL with the characters encoded that must be, so that the strict parser accepts it.
std::string encoded(std::string_view url) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto end = hostEnd(url);
    std::string ascii;
    for (std::size_t i = 0; i < url.size(); ++i) {
        const char c = url[i];
        if (isToEncode(c) && !(i < end && (c == '[' || c == ']'))) {
            const auto byte = static_cast<unsigned char>(c);
            ascii += {'%', digits[byte >> 4U], digits[byte & 0x0fU]};
        } else {
            ascii += c;
        }
    }
    return ascii;
}

} // namespace

std::optional<std::string> lastPathComponent(std::string_view url) {
    const auto parsed = Url::parse(encoded(url));
    const auto components = parsed ? UrlComponents::parse(parsed->absoluteString()) : std::nullopt;
    if (!components) {
        return std::nullopt;
    }
    const std::string path = components->path();
    const auto end = path.find_last_not_of('/');
    if (end == std::string::npos) {
        return path.empty() ? "" : "/";
    }
    const auto slash = path.rfind('/', end);
    const auto begin = slash == std::string::npos ? 0 : slash + 1;
    return path.substr(begin, end + 1 - begin);
}

bool isFileReference(std::string_view url) {
    return url.starts_with("file:///.file/id=") || url.starts_with("file://localhost/.file/id=");
}

std::optional<std::filesystem::path> referencedFile(std::string_view url) {
    const auto parsed = Url::parse(encoded(url));
    return parsed ? parsed->filePath() : std::nullopt;
}

} // namespace quillane::core
