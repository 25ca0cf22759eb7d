// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace quillane::core {

/// One label of another application, as that application shows it in each of its interface languages. Empty where the
/// application does not have the language, or where its translation is not known: a label is taken from the
/// application's published translations or read in the application itself, never guessed.
struct Labels {
    std::string_view english{};
    std::string_view british{}; ///< where British English differs
    std::string_view hebrew{};
    std::string_view arabic{};
    std::string_view persian{};
    std::string_view urdu{};
    std::string_view french{};
    std::string_view german{};
    std::string_view russian{};
    std::string_view spanish{};

    /// Whether an application that shows this text shows the label. White space around it and invisible direction marks
    /// in it do not count; case does.
    [[nodiscard]] bool matches(std::string_view shown) const;
};

} // namespace quillane::core
