// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/ClipboardTargets.hpp"

#include "core/clipboard/ClipboardSnapshot.hpp"
#include "core/clipboard/PasteboardTypes.hpp"
#include "core/support/Utf8.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace quillane::clipboardTargets {

namespace {

namespace Types = core::pasteboardTypes;

/// The format of a target's bytes.
enum class Form {
    same,          ///< those of the uniform type
    utf8,          ///< text in UTF-8
    utf8OrLatin1,  ///< text of unknown encoding
    latin1,        ///< text in ISO 8859-1
    utf16Lines,    ///< a URL and its title on two lines, in UTF-16 of this machine
    utf8Lines,     ///< the same in UTF-8
    uriList,       ///< URIs, one a line
    fileOperation, ///< "copy" or "cut", then URIs
};

struct Target {
    std::string_view name;
    std::string_view type;
    Form form;
    bool isOffered; ///< offered for our own contents too; else only understood
};

/// For each type, the best target first.
constexpr std::array targets{
    Target{"UTF8_STRING", Types::string, Form::utf8, true},
    Target{"text/plain;charset=utf-8", Types::string, Form::utf8, true},
    Target{"text/plain;charset=UTF-8", Types::string, Form::utf8, false},
    Target{"text/plain", Types::string, Form::utf8OrLatin1, true},
    Target{"STRING", Types::string, Form::latin1, true},
    Target{"text/rtf", Types::rtf, Form::same, true},
    Target{"application/rtf", Types::rtf, Form::same, true},
    Target{"text/richtext", Types::rtf, Form::same, false},
    Target{"text/html", Types::html, Form::same, true},
    Target{"text/x-moz-url", Types::url, Form::utf16Lines, true},
    Target{"_NETSCAPE_URL", Types::url, Form::utf8Lines, false},
    Target{"image/png", Types::png, Form::same, true},
    Target{"image/jpeg", Types::jpeg, Form::same, true},
    Target{"image/jpg", Types::jpeg, Form::same, false},
    Target{"image/tiff", Types::tiff, Form::same, true},
    Target{"text/uri-list", Types::fileUrl, Form::uriList, true},
    Target{"x-special/gnome-copied-files", Types::fileUrl, Form::fileOperation, true},
    Target{"org.nspasteboard.source", Types::source, Form::same, true},
};

/// Added by password managers on Linux: a copy that carries it is a secret, whatever its value.
constexpr std::string_view passwordHint = "x-kde-passwordManagerHint";

constexpr std::size_t knownCount = targets.size() + core::clipboardPrivacy::ignoredTypes.size() + 1;

constexpr auto knownNames = [] {
    std::array<std::string_view, knownCount> names{};
    auto next = names.begin();
    for (const auto& target : targets) {
        *next++ = target.name;
    }
    for (const auto marker : core::clipboardPrivacy::ignoredTypes) {
        *next++ = marker;
    }
    *next = passwordHint;
    return names;
}();

const Target* find(std::string_view name) {
    const auto found = std::ranges::find(targets, name, &Target::name);
    return found != targets.end() ? &*found : nullptr;
}

std::string_view textOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::vector<std::byte> bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

void appendUtf8(std::string& text, char32_t c) {
    if (c < 0x80) {
        text += static_cast<char>(c);
        return;
    }
    const int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    constexpr std::array<unsigned, 4> lead{0, 0xc0, 0xe0, 0xf0};
    text += static_cast<char>(lead[static_cast<std::size_t>(more)] | c >> static_cast<unsigned>(6 * more));
    for (int shift = 6 * (more - 1); shift >= 0; shift -= 6) {
        text += static_cast<char>(0x80 | (c >> static_cast<unsigned>(shift) & 0x3fU));
    }
}

std::string fromLatin1(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        appendUtf8(text, static_cast<unsigned char>(c));
    }
    return text;
}

/// None when a character is outside it.
std::optional<std::string> toLatin1(std::string_view utf8) {
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto c = static_cast<unsigned char>(utf8[i]);
        if (c < 0x80) {
            bytes += static_cast<char>(c);
        } else if ((c == 0xc2 || c == 0xc3) && i + 1 < utf8.size()) {
            bytes += static_cast<char>(static_cast<unsigned char>(c << 6U) |
                                       (static_cast<unsigned char>(utf8[++i]) & 0x3fU));
        } else {
            return std::nullopt;
        }
    }
    return bytes;
}

/// UTF-16 in the byte order of this machine, as programs on one display exchange it, unless a mark at the start says
/// otherwise.
std::string fromUtf16(std::span<const std::byte> bytes) {
    std::vector<char16_t> units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        units.push_back(
            static_cast<char16_t>(std::to_integer<unsigned>(bytes[i]) | std::to_integer<unsigned>(bytes[i + 1]) << 8U));
    }
    if (!units.empty() && units.front() == 0xfffe) {
        for (auto& unit : units) {
            unit = static_cast<char16_t>(unit << 8U | unit >> 8U);
        }
    }
    std::string text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t c = units[i];
        const bool isPair =
            c >= 0xd800 && c < 0xdc00 && i + 1 < units.size() && units[i + 1] >= 0xdc00 && units[i + 1] < 0xe000;
        if (isPair) {
            c = 0x10000 + ((c - 0xd800) << 10U) + (units[++i] - 0xdc00);
        }
        if (c != 0xfeff) {
            appendUtf8(text, c >= 0xd800 && c < 0xe000 ? U'�' : c);
        }
    }
    return text;
}

std::string toUtf16(std::string_view ascii) {
    std::string bytes;
    for (const char c : ascii) {
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

std::string_view firstLine(std::string_view text) {
    return text.substr(0, text.find_first_of("\r\n"));
}

/// Text as UTF-8, without the NUL that some owners append.
std::optional<std::vector<std::byte>> utf8Bytes(std::vector<std::byte> bytes) {
    if (!core::isValidUtf8(textOf(bytes))) {
        return std::nullopt;
    }
    if (!bytes.empty() && bytes.back() == std::byte{0}) {
        bytes.pop_back();
    }
    return bytes;
}

bool startsWithFileScheme(std::string_view line) {
    constexpr std::string_view scheme = "file:";
    return line.size() > scheme.size() && std::ranges::equal(line.substr(0, scheme.size()), scheme, {}, [](char c) {
               return c == ':' ? c : static_cast<char>(c | 0x20);
           });
}

const core::ClipboardRepresentation* representation(const core::PasteboardItem& item, std::string_view type) {
    const auto found = std::ranges::find(item.representations, type, &core::ClipboardRepresentation::type);
    return found != item.representations.end() ? &*found : nullptr;
}

/// The first item's contents for the type, either data or a string.
std::optional<core::SharedBytes> contents(std::span<const core::PasteboardItem> items, std::string_view type) {
    for (const auto& item : items) {
        if (const auto* found = representation(item, type)) {
            return found->data;
        }
        for (const auto& [stringType, text] : item.strings) {
            if (stringType == type) {
                return core::SharedBytes(bytesOf(text));
            }
        }
    }
    return std::nullopt;
}

/// The file URLs of all items, each followed by the separator.
std::string fileUrls(std::span<const core::PasteboardItem> items, std::string_view separator) {
    std::string list;
    for (const auto& item : items) {
        if (const auto* found = representation(item, Types::fileUrl)) {
            list += textOf(*found->data);
            list += separator;
        }
    }
    return list;
}

std::optional<core::SharedBytes> converted(const Target& target, std::span<const core::PasteboardItem> items) {
    auto data = contents(items, target.type);
    if (!data) {
        return std::nullopt;
    }
    switch (target.form) {
    case Form::same:
    case Form::utf8:
    case Form::utf8OrLatin1:
        return data;
    case Form::latin1: {
        const auto text = toLatin1(textOf(**data));
        return text ? std::optional(core::SharedBytes(bytesOf(*text))) : std::nullopt;
    }
    case Form::utf16Lines:
        return core::SharedBytes(bytesOf(toUtf16(std::string(textOf(**data)) + "\n" + std::string(textOf(**data)))));
    case Form::utf8Lines:
        return std::nullopt;
    case Form::uriList:
        return core::SharedBytes(bytesOf(fileUrls(items, "\r\n")));
    case Form::fileOperation: {
        std::string list = "copy\n" + fileUrls(items, "\n");
        list.pop_back();
        return core::SharedBytes(bytesOf(list));
    }
    }
    return std::nullopt;
}

} // namespace

std::span<const std::string_view> known() {
    return knownNames;
}

core::PasteboardTypeSet typesOf(std::span<const std::string_view> offered) {
    core::PasteboardTypeSet types;
    for (const auto name : offered) {
        if (const auto* target = find(name)) {
            types.emplace(target->type);
        } else if (name == passwordHint) {
            types.emplace(Types::concealed);
        } else if (std::ranges::find(core::clipboardPrivacy::ignoredTypes, name) !=
                   core::clipboardPrivacy::ignoredTypes.end()) {
            types.emplace(name);
        }
    }
    if (types.contains(Types::png)) {
        types.erase(std::string(Types::jpeg));
        types.erase(std::string(Types::tiff));
    }
    return types;
}

std::optional<std::string_view> targetFor(std::string_view type, std::span<const std::string_view> offered) {
    for (const auto& target : targets) {
        if (target.type == type && std::ranges::find(offered, target.name) != offered.end()) {
            return target.name;
        }
    }
    return std::nullopt;
}

std::optional<std::vector<std::byte>> toUniform(std::string_view name, std::vector<std::byte> bytes) {
    const auto* target = find(name);
    if (!target) {
        return std::nullopt;
    }
    switch (target->form) {
    case Form::same:
        return bytes;
    case Form::utf8:
        return utf8Bytes(std::move(bytes));
    case Form::utf8OrLatin1:
        if (core::isValidUtf8(textOf(bytes))) {
            return utf8Bytes(std::move(bytes));
        }
        return utf8Bytes(bytesOf(fromLatin1(textOf(bytes))));
    case Form::latin1:
        return utf8Bytes(bytesOf(fromLatin1(textOf(bytes))));
    case Form::utf16Lines:
    case Form::utf8Lines: {
        const std::string text = target->form == Form::utf16Lines ? fromUtf16(bytes) : std::string(textOf(bytes));
        const auto url = firstLine(text);
        return url.empty() ? std::nullopt : utf8Bytes(bytesOf(url));
    }
    case Form::uriList:
    case Form::fileOperation:
        return std::nullopt; // several items: see parseUriList
    }
    return std::nullopt;
}

UriList parseUriList(std::span<const std::byte> bytes) {
    UriList list;
    auto rest = textOf(bytes);
    if (rest.ends_with('\0')) {
        rest.remove_suffix(1);
    }
    for (bool isFirst = true; !rest.empty(); isFirst = false) {
        const auto line = firstLine(rest);
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        if (line.empty() || line.starts_with('#') || (isFirst && (line == "copy" || line == "cut"))) {
            continue;
        }
        if (startsWithFileScheme(line)) {
            list.fileUrls.emplace_back(line);
            if (list.fileUrls.size() > core::clipboardSnapshot::maximumItems) {
                break;
            }
        } else if (!list.url) {
            list.url = line;
        }
    }
    return list;
}

std::vector<std::string_view> targetsFor(std::span<const core::PasteboardItem> items) {
    std::vector<std::string_view> offered;
    for (const auto& target : targets) {
        if (target.isOffered && contents(items, target.type)) {
            offered.push_back(target.name);
        }
    }
    return offered;
}

std::optional<core::SharedBytes> dataFor(std::string_view name, std::span<const core::PasteboardItem> items) {
    const auto* target = find(name);
    return target && target->isOffered ? converted(*target, items) : std::nullopt;
}

} // namespace quillane::clipboardTargets
