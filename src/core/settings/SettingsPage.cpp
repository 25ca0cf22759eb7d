// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/settings/SettingsPage.hpp"

#include "core/localization/Texts.hpp"

#include <algorithm>

namespace quillane::core {

namespace {

struct PageFacts {
    std::string_view name;
    std::string_view symbol;
};

constexpr std::array<PageFacts, allSettingsPages.size()> facts{{
    {texts::general.key, "gearshape"},
    {texts::shortcuts.key, "keyboard"},
    {texts::history.key, "clock.arrow.circlepath"},
    {texts::permissions.key, "hand.raised"},
    {texts::testing.key, "checkmark.circle"},
    {texts::updates.key, "arrow.down.app"},
}};

} // namespace

std::string_view rawValue(SettingsPage page) {
    return facts.at(static_cast<std::size_t>(page)).name;
}

std::optional<SettingsPage> settingsPageFromRawValue(std::string_view text) {
    const auto* found =
        std::ranges::find_if(allSettingsPages, [&](SettingsPage page) { return rawValue(page) == text; });
    return found == allSettingsPages.end() ? std::nullopt : std::optional(*found);
}

LocalizedText title(SettingsPage page) {
    return LocalizedText(std::string(rawValue(page)));
}

std::string_view symbol(SettingsPage page) {
    return facts.at(static_cast<std::size_t>(page)).symbol;
}

} // namespace quillane::core
