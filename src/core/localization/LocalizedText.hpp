// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/AppLanguage.hpp"

#include <concepts>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillane::core {

/// A message to the user, rendered when it is shown, in the language of that moment. The key is its Hebrew source text,
/// in which each "%@" stands for one argument. The ready-made messages are in Texts.hpp.
class LocalizedText {
public:
    class Argument;
    class Interpolation;

    /// The empty text.
    LocalizedText();

    /// A text whose key stands for itself until the table of translations knows it.
    explicit LocalizedText(std::string key);

    LocalizedText(std::string key, std::vector<Argument> arguments);

    LocalizedText(const LocalizedText&);
    LocalizedText(LocalizedText&&) noexcept;
    LocalizedText& operator=(const LocalizedText&);
    LocalizedText& operator=(LocalizedText&&) noexcept;
    ~LocalizedText();

    [[nodiscard]] const std::string& key() const { return key_; }

    [[nodiscard]] const std::vector<Argument>& arguments() const { return arguments_; }

    /// The text in the language. A key that has no translation is rendered as it stands in every language. Without
    /// arguments nothing is formatted, so percent signs stay. With arguments "%%" gives one percent sign, surplus
    /// arguments are left out and surplus placeholders stay visible.
    [[nodiscard]] std::string rendered(AppLanguage language) const;

    bool operator==(const LocalizedText& other) const;

private:
    std::string key_;
    std::vector<Argument> arguments_;
};

/// The replacement of one "%@": a string as it is, or a text that is rendered in the language of its parent.
class LocalizedText::Argument {
public:
    Argument(std::string text) : value_(std::move(text)) {} // NOLINT(google-explicit-constructor)

    Argument(std::string_view text) : value_(std::string(text)) {} // NOLINT(google-explicit-constructor)

    Argument(const char* text) : value_(std::string(text)) {} // NOLINT(google-explicit-constructor)

    Argument(LocalizedText text) : value_(std::move(text)) {} // NOLINT(google-explicit-constructor)

    [[nodiscard]] std::string rendered(AppLanguage language) const;

    bool operator==(const Argument& other) const;

private:
    std::variant<std::string, LocalizedText> value_;
};

/// Builds a text piece by piece:
///
///     LocalizedText::Interpolation().appendLiteral("נותרו ").appendInterpolation(3).text() // key "נותרו %@"
class LocalizedText::Interpolation {
public:
    /// Adds the piece to the key.
    Interpolation& appendLiteral(std::string_view piece);

    /// Adds a placeholder to the key, and its argument.
    Interpolation& appendInterpolation(Argument argument);

    template <std::integral Number>
    Interpolation& appendInterpolation(Number number) {
        if constexpr (std::same_as<Number, bool>) {
            return appendInterpolation(Argument(number ? "true" : "false"));
        } else {
            return appendInterpolation(Argument(std::to_string(number)));
        }
    }

    [[nodiscard]] LocalizedText text() const;

private:
    std::string key_;
    std::vector<Argument> arguments_;
};

} // namespace quillane::core
