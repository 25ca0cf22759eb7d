// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/localization/LocalizedText.hpp"

#include "core/localization/AppTranslations.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quillane::core {
namespace {

/// The translation of the key, or the key itself.
std::string_view formatFor(std::string_view key, AppLanguage language) {
    const auto* entry = language == AppLanguage::hebrew ? nullptr : appTranslations::entry(key);
    if (entry == nullptr) {
        return key;
    }
    return language == AppLanguage::english ? entry->english : entry->arabic;
}

std::string formatted(std::string_view format, const std::vector<LocalizedText::Argument>& arguments,
                      AppLanguage language) {
    std::string result;
    auto argument = arguments.begin();
    for (std::size_t position = 0; position < format.size();) {
        const auto rest = format.substr(position);
        if (rest.starts_with("%%")) {
            result += '%';
            position += 2;
        } else if (rest.starts_with("%@") && argument != arguments.end()) {
            result += (argument++)->rendered(language);
            position += 2;
        } else {
            result += rest.front();
            ++position;
        }
    }
    return result;
}

} // namespace

LocalizedText::LocalizedText() = default;

LocalizedText::LocalizedText(std::string key) : key_(std::move(key)) {}

LocalizedText::LocalizedText(std::string key, std::vector<Argument> arguments)
    : key_(std::move(key)), arguments_(std::move(arguments)) {}

LocalizedText::LocalizedText(const LocalizedText&) = default;
LocalizedText::LocalizedText(LocalizedText&&) noexcept = default;
LocalizedText& LocalizedText::operator=(const LocalizedText&) = default;
LocalizedText& LocalizedText::operator=(LocalizedText&&) noexcept = default;
LocalizedText::~LocalizedText() = default;

bool LocalizedText::operator==(const LocalizedText& other) const {
    return key_ == other.key_ && std::ranges::equal(arguments_, other.arguments_);
}

bool LocalizedText::Argument::operator==(const Argument& other) const {
    return value_ == other.value_;
}

std::string LocalizedText::rendered(AppLanguage language) const {
    const auto format = formatFor(key_, language);
    return arguments_.empty() ? std::string(format) : formatted(format, arguments_, language);
}

std::string LocalizedText::Argument::rendered(AppLanguage language) const {
    if (const auto* nested = std::get_if<LocalizedText>(&value_)) {
        return nested->rendered(language);
    }
    return std::get<std::string>(value_);
}

LocalizedText::Interpolation& LocalizedText::Interpolation::appendLiteral(std::string_view piece) {
    key_ += piece;
    return *this;
}

LocalizedText::Interpolation& LocalizedText::Interpolation::appendInterpolation(Argument argument) {
    key_ += "%@";
    arguments_.push_back(std::move(argument));
    return *this;
}

LocalizedText LocalizedText::Interpolation::text() const {
    return {key_, arguments_};
}

} // namespace quillane::core
