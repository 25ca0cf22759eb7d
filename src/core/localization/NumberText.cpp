// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/localization/NumberText.hpp"

#include "core/localization/FormattingLocale.hpp"
#include "core/localization/Texts.hpp"

#include <array>
#include <cmath>
#include <cstddef>

#include <unicode/numberformatter.h>
#include <unicode/unistr.h>

namespace quillane::core {

namespace {

using Unit = decltype(texts::sizeInBytes);

constexpr std::array<Unit, 5> units{texts::sizeInBytes, texts::sizeInKilobytes, texts::sizeInMegabytes,
                                    texts::sizeInGigabytes, texts::sizeInTerabytes};
constexpr double thousand = 1000;
constexpr double tenths = 10;

std::string formatted(double number, AppLanguage language) {
    UErrorCode status = U_ZERO_ERROR;
    const auto text = icu::number::NumberFormatter::withLocale(formattingLocale(language))
                          .precision(icu::number::Precision::maxFraction(1))
                          .formatDouble(number, status)
                          .toString(status);
    std::string result;
    if (U_SUCCESS(status)) {
        text.toUTF8String(result);
    }
    return result;
}

} // namespace

std::string numberText(std::int64_t number, AppLanguage language) {
    return formatted(static_cast<double>(number), language);
}

std::string sizeText(double bytes, AppLanguage language) {
    double number = std::round(bytes);
    std::size_t unit = 0;
    while (number >= thousand && unit + 1 < units.size()) {
        number = std::round(number / thousand * tenths) / tenths;
        ++unit;
    }
    return units.at(unit)(formatted(number, language)).rendered(language);
}

std::string productText(std::int64_t width, std::int64_t height) {
    return "\u2066" + std::to_string(width) + " × " + std::to_string(height) + "\u2069";
}

} // namespace quillane::core
