// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/FileReference.hpp"

#include "core/support/Url.hpp"

namespace quillane::core {

namespace {

/// The URL with its characters outside ASCII encoded.
std::string encoded(std::string_view url) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string ascii;
    for (const char c : url) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            ascii += c;
        } else {
            ascii += {'%', digits[byte >> 4U], digits[byte & 0x0fU]};
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

std::optional<std::filesystem::path> referencedFile(std::string_view url) {
    const auto parsed = Url::parse(encoded(url));
    return parsed ? parsed->filePath() : std::nullopt;
}

} // namespace quillane::core
