// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardPrivacy.hpp"

#include <algorithm>

namespace quillane::core::clipboardPrivacy {

bool hasIgnoredType(const PasteboardTypeSet& types) {
    return std::ranges::any_of(ignoredTypes, [&](std::string_view type) { return types.contains(type); });
}

bool shouldIgnore(const PasteboardTypeSet& types, std::string_view source, std::string_view foreground,
                  std::span<const std::string> ignoredApps, bool secureInput) {
    const auto isEither = [&](std::string_view app) { return app == source || app == foreground; };
    return secureInput || hasIgnoredType(types) || std::ranges::any_of(passwordApps, isEither) ||
           std::ranges::any_of(ignoredApps, isEither);
}

} // namespace quillane::core::clipboardPrivacy
