// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/AppLanguage.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace quillane::core {

/// The record of one installation: its interface language.
struct InstallationPreferences {
    AppLanguage language = AppLanguage::english;
    bool userSelectedLanguage = false; ///< the user has picked a language

    void choose(AppLanguage chosen) {
        language = chosen;
        userSelectedLanguage = true;
    }

    /// A JSON object (RFC 8259) with the keys "language" (an identifier) and "userSelectedLanguage" (a Boolean).
    [[nodiscard]] std::string toJson() const;

    /// None when the document is not such an object.
    [[nodiscard]] static std::optional<InstallationPreferences> fromJson(std::string_view document);

    bool operator==(const InstallationPreferences&) const = default;
};

} // namespace quillane::core
