// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"

#include <array>
#include <optional>
#include <string_view>

namespace quillane::core {

/// The pages of the settings window, in their order.
enum class SettingsPage { general, shortcuts, clipboard, permissions, testing, updates };

inline constexpr std::array allSettingsPages{SettingsPage::general,   SettingsPage::shortcuts,
                                             SettingsPage::clipboard, SettingsPage::permissions,
                                             SettingsPage::testing,   SettingsPage::updates};

/// The page's Hebrew name, which is the key of its title.
[[nodiscard]] std::string_view rawValue(SettingsPage page);

/// The page with this raw value, or none for any other text.
[[nodiscard]] std::optional<SettingsPage> settingsPageFromRawValue(std::string_view text);

[[nodiscard]] LocalizedText title(SettingsPage page);

/// The name of the system symbol that stands for the page.
[[nodiscard]] std::string_view symbol(SettingsPage page);

} // namespace quillane::core
