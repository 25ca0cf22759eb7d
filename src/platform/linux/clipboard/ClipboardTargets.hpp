// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardPrivacy.hpp"
#include "core/clipboard/PasteboardContents.hpp"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// How the targets of an X selection (ICCCM, section 2.6.2, and MIME types) map to uniform types.
namespace quillane::clipboardTargets {

/// Every target that is understood, markers included. Others are ignored.
[[nodiscard]] std::span<const std::string_view> known();

/// The uniform types that an owner with these targets offers. Lists of URIs count as files until they have been read. A
/// picture that is offered as PNG is offered as nothing else: programs convert it to the other formats when asked, and
/// all of them together would exceed what an entry may hold.
[[nodiscard]] core::PasteboardTypeSet typesOf(std::span<const std::string_view> targets);

/// The target to ask for a type: the one that keeps most of it.
[[nodiscard]] std::optional<std::string_view> targetFor(std::string_view type,
                                                        std::span<const std::string_view> targets);

/// An owner's data for a target, as the bytes of its uniform type. None when the data is not of that type.
[[nodiscard]] std::optional<std::vector<std::byte>> toUniform(std::string_view target, std::vector<std::byte> bytes);

/// A list of URIs (RFC 2483, section 5), or the list that file managers copy.
struct UriList {
    std::vector<std::string> fileUrls; ///< at most one more than the items that an entry may have
    std::optional<std::string> url;    ///< the first one that is not a file

    bool operator==(const UriList&) const = default;
};

[[nodiscard]] UriList parseUriList(std::span<const std::byte> bytes);

/// The targets that contents of this pasteboard are offered as.
[[nodiscard]] std::vector<std::string_view> targetsFor(std::span<const core::PasteboardItem> items);

/// The data to deliver for one of them; none for any other.
[[nodiscard]] std::optional<core::SharedBytes> dataFor(std::string_view target,
                                                       std::span<const core::PasteboardItem> items);

} // namespace quillane::clipboardTargets
