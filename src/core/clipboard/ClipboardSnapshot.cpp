// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardSnapshot.hpp"

#include "core/clipboard/FileReference.hpp"
#include "core/clipboard/PasteboardTypes.hpp"
#include "core/support/Characters.hpp"
#include "core/support/Utf8.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <span>
#include <system_error>
#include <utility>

namespace quillane::core::clipboardSnapshot {

namespace {

constexpr std::array textTypes{pasteboardTypes::string, pasteboardTypes::rtf, pasteboardTypes::html,
                               pasteboardTypes::url};
constexpr std::array imageTypes{pasteboardTypes::png, pasteboardTypes::jpeg, pasteboardTypes::tiff};
constexpr std::array fileTypes{pasteboardTypes::fileUrl};

std::span<const std::string_view> keptTypes(ClipboardKind kind) {
    switch (kind) {
    case ClipboardKind::text:
        return textTypes;
    case ClipboardKind::image:
        return imageTypes;
    case ClipboardKind::files:
        return fileTypes;
    }
    return {};
}

ClipboardKind kindOf(const PasteboardTypeSet& types) {
    const auto has = [&](std::string_view type) { return types.contains(type); };
    if (has(pasteboardTypes::fileUrl)) {
        return ClipboardKind::files;
    }
    return std::ranges::any_of(imageTypes, has) ? ClipboardKind::image : ClipboardKind::text;
}

std::optional<std::string_view> utf8(const SharedBytes& data) {
    const std::string_view text(reinterpret_cast<const char*>(data->data()), data->size());
    return isValidUtf8(text) ? std::optional(text) : std::nullopt;
}

/// Reads the kept flavours of every item; none when an item has none or all of them together are too large.
std::optional<ClipboardItems> readItems(const PasteboardContents& pasteboard, ClipboardKind kind,
                                        const std::vector<std::vector<std::string>>& offered) {
    ClipboardItems items;
    std::size_t total = 0;
    for (std::size_t i = 0; i < offered.size(); ++i) {
        auto& item = items.emplace_back();
        for (const auto type : keptTypes(kind)) {
            if (std::ranges::find(offered[i], type) == offered[i].end()) {
                continue;
            }
            if (auto data = pasteboard.data(i, type)) {
                total += (*data)->size();
                if (total > maximumBytes) {
                    return std::nullopt;
                }
                item.push_back({std::string(type), std::move(*data)});
            }
        }
        if (item.empty()) {
            return std::nullopt;
        }
    }
    return total > 0 ? std::optional(std::move(items)) : std::nullopt;
}

/// The name of the file that a URL names. A reference that leads nowhere has nothing but its own text.
std::optional<std::string> fileName(std::string_view url, const FileFinder& findFile) {
    const auto file = isFileReference(url) ? findFile(url) : std::nullopt;
    return file ? std::optional(file->filename().string()) : lastPathComponent(url);
}

std::string fileNames(const ClipboardItems& items, const FileFinder& findFile) {
    std::string names;
    bool first = true;
    for (const auto& item : items) {
        for (const auto& representation : item) {
            const auto text = utf8(representation.data);
            if (const auto name = text ? fileName(*text, findFile) : std::nullopt) {
                names += std::exchange(first, false) ? "" : "\n";
                names += *name;
            }
        }
    }
    return names;
}

std::optional<std::string_view> plainText(const std::vector<ClipboardRepresentation>& item) {
    const auto plain = std::ranges::find(item, pasteboardTypes::string, &ClipboardRepresentation::type);
    return plain != item.end() ? utf8(plain->data) : std::nullopt;
}

/// Text is read only where it is offered: on macOS each read may ask the user for access.
std::optional<std::string> offeredString(const PasteboardContents& pasteboard, const PasteboardTypeSet& types,
                                         std::string_view type) {
    return types.contains(type) ? pasteboard.string(type) : std::nullopt;
}

std::string textOf(const PasteboardContents& pasteboard, ClipboardKind kind, const PasteboardTypeSet& types,
                   const ClipboardItems& items) {
    switch (kind) {
    case ClipboardKind::files:
        return fileNames(items, pasteboard.fileFinder());
    case ClipboardKind::image:
        return {};
    case ClipboardKind::text:
        break;
    }
    for (const auto type : {pasteboardTypes::string, pasteboardTypes::url}) {
        if (auto text = offeredString(pasteboard, types, type)) {
            return std::move(*text);
        }
    }
    return {};
}

std::string_view cutSource(std::string_view source) {
    return firstCharacters(source, maximumSourceCharacters);
}

bool namesExistingFile(const ClipboardRepresentation& representation, const FileFinder& findFile) {
    const auto text = utf8(representation.data);
    const auto file = text ? findFile(*text) : std::nullopt;
    std::error_code error;
    return file && std::filesystem::exists(*file, error);
}

bool restorePlainText(const ClipboardEntry& entry, PasteboardContents& pasteboard) {
    if (entry.kind != ClipboardKind::text || entry.items->empty()) {
        return false;
    }
    const auto text = plainText(entry.items->front());
    if (!text) {
        return false;
    }
    pasteboard.clear();
    return pasteboard.setString(pasteboardTypes::string, *text);
}

} // namespace

std::optional<ClipboardEntry> capture(const PasteboardContents& pasteboard, const ClipboardOptions& options,
                                      const Moment& moment) {
    const auto changeCount = pasteboard.changeCount();
    const auto offered = pasteboard.itemTypes();
    if (offered.empty() || offered.size() > maximumItems) {
        return std::nullopt;
    }
    PasteboardTypeSet types;
    for (const auto& item : offered) {
        types.insert(item.begin(), item.end());
    }
    auto markers = types;
    for (auto& type : pasteboard.ownTypes()) {
        markers.insert(std::move(type));
    }
    const auto isIgnored = [&](std::string_view source) {
        return clipboardPrivacy::shouldIgnore(markers, source, moment.foreground, options.ignoredApps,
                                              moment.secureInput);
    };
    const auto kind = kindOf(types);
    if (isIgnored(moment.foreground) || !options.accepts(kind)) { // first: reading may ask the user for access
        return std::nullopt;
    }
    std::string source = offeredString(pasteboard, types, pasteboardTypes::source).value_or(moment.foreground);
    source.resize(cutSource(source).size());
    if (isIgnored(source)) {
        return std::nullopt;
    }
    auto items = readItems(pasteboard, kind, offered);
    if (!items || pasteboard.changeCount() != changeCount) {
        return std::nullopt;
    }
    const auto text = kind == ClipboardKind::text && items->size() == 1 ? plainText(items->front()) : std::nullopt;
    const auto asked = text ? std::string() : textOf(pasteboard, kind, types, *items);
    return ClipboardEntry::make(kind, text.value_or(asked), std::move(source), moment.sourceName, std::move(*items),
                                moment.now);
}

std::vector<std::string_view> wantedTypes(const PasteboardTypeSet& types, const ClipboardOptions& options,
                                          const Moment& moment, const std::optional<std::string>& source) {
    const auto kind = kindOf(types);
    const auto named = source ? cutSource(*source) : std::string_view();
    if (clipboardPrivacy::shouldIgnore(types, named, moment.foreground, options.ignoredApps, moment.secureInput) ||
        !options.accepts(kind)) {
        return {};
    }
    std::vector<std::string_view> wanted;
    std::ranges::copy_if(keptTypes(kind), std::back_inserter(wanted),
                         [&](std::string_view type) { return types.contains(type); });
    if (!wanted.empty() && !source && types.contains(pasteboardTypes::source)) {
        return {pasteboardTypes::source};
    }
    return wanted;
}

bool restore(const ClipboardEntry& entry, PasteboardContents& pasteboard, RestoreMode mode) {
    if (mode == RestoreMode::plainText) {
        return restorePlainText(entry, pasteboard);
    }
    const auto isThere = [findFile = pasteboard.fileFinder()](const ClipboardRepresentation& representation) {
        return namesExistingFile(representation, findFile);
    };
    std::vector<PasteboardItem> items;
    for (const auto& item : *entry.items) {
        if (entry.kind == ClipboardKind::files && !std::ranges::all_of(item, isThere)) {
            return false;
        }
        items.push_back({item, {{std::string(pasteboardTypes::source), entry.source}}});
    }
    pasteboard.clear();
    return pasteboard.write(std::move(items));
}

} // namespace quillane::core::clipboardSnapshot
