// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/AppLanguage.hpp"

#include <cstdint>
#include <string>

/// Numbers as they are shown: Western digits in every language, with the language's separators.
namespace quillane::core {

/// "1,000".
[[nodiscard]] std::string numberText(std::int64_t number, AppLanguage language);

/// A size in the largest unit that it fills, in powers of 1000 and with at most one decimal: "1.5 MB". Number and unit
/// keep their order in any text.
[[nodiscard]] std::string sizeText(double bytes, AppLanguage language);

/// "1920 × 1080" in that order in every language.
[[nodiscard]] std::string productText(std::int64_t width, std::int64_t height);

} // namespace quillane::core
