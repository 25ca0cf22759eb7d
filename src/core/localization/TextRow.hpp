// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/Desktop.hpp"
#include "core/localization/LocalizedText.hpp"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillane::core {

/// How many arguments a format text takes: its "%@" placeholders. "%%" is a percent sign.
[[nodiscard]] constexpr std::size_t placeholderCount(std::string_view format) {
    std::size_t count = 0;
    for (std::size_t position = 0; position + 1 < format.size(); ++position) {
        if (format[position] == '%') {
            ++position;
            count += format[position] == '@' ? 1 : 0;
        }
    }
    return count;
}

/// Whether every percent sign of a text that takes arguments begins a "%@" or "%%". One without arguments is never
/// formatted and may hold any.
[[nodiscard]] constexpr bool hasPlainPercents(std::string_view format) {
    if (placeholderCount(format) == 0) {
        return true;
    }
    for (std::size_t position = 0; position < format.size(); ++position) {
        if (format[position] == '%') {
            ++position;
            if (position == format.size() || (format[position] != '@' && format[position] != '%')) {
                return false;
            }
        }
    }
    return true;
}

template <typename T>
concept TextArgument = std::constructible_from<LocalizedText::Argument, T>;

/// One message of the table, under its readable name. It becomes a LocalizedText wherever one is wanted; a message with
/// placeholders is called with exactly that many arguments.
template <std::size_t placeholders>
struct TextRow {
    std::string_view key;

    template <TextArgument... Arguments>
    [[nodiscard]] LocalizedText operator()(Arguments&&... arguments) const
        requires(sizeof...(Arguments) == placeholders) {
        return {std::string(key),
                std::vector<LocalizedText::Argument>{LocalizedText::Argument(std::forward<Arguments>(arguments))...}};
    }
};

template <>
struct TextRow<0> {
    std::string_view key;

    operator LocalizedText() const { return LocalizedText(std::string(key)); } // NOLINT(google-explicit-constructor)

    [[nodiscard]] std::string rendered(AppLanguage language) const { return LocalizedText(*this).rendered(language); }
};

/// A message that names the computer or its keys: one row for each desktop.
template <std::size_t placeholders>
struct DesktopTextRow {
    TextRow<placeholders> onMacOS;
    TextRow<placeholders> onLinux;

    [[nodiscard]] constexpr const TextRow<placeholders>& on(Desktop desktop) const {
        return desktop == Desktop::macOS ? onMacOS : onLinux;
    }
};

} // namespace quillane::core
