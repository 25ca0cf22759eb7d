// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Uuid.hpp"

#include <cstring>
#include <random>

namespace quillane::core {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

constexpr bool hasHyphenBefore(std::size_t byte) {
    return byte == 4 || byte == 6 || byte == 8 || byte == 10;
}

int hexValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    const char lower = static_cast<char>(digit | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace

Uuid Uuid::random() {
    static thread_local std::random_device device; // the system's generator; constructing it takes longer than using it
    Uuid uuid;
    for (std::size_t i = 0; i < uuid.bytes.size(); i += 4) {
        const std::uint32_t word = device();
        std::memcpy(uuid.bytes.data() + i, &word, sizeof word);
    }
    uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0fU) | 0x40U);
    uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3fU) | 0x80U);
    return uuid;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != 36) {
        return std::nullopt;
    }
    Uuid uuid;
    std::size_t at = 0;
    for (std::size_t i = 0; i < uuid.bytes.size(); ++i) {
        if (hasHyphenBefore(i) && text[at++] != '-') {
            return std::nullopt;
        }
        const int high = hexValue(text[at]);
        const int low = hexValue(text[at + 1]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        uuid.bytes[i] = static_cast<std::uint8_t>(high * 16 + low);
        at += 2;
    }
    return uuid;
}

std::string Uuid::toString() const {
    std::string text;
    text.reserve(36);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (hasHyphenBefore(i)) {
            text += '-';
        }
        text += hexDigits[bytes[i] >> 4U];
        text += hexDigits[bytes[i] & 0x0fU];
    }
    return text;
}

} // namespace quillane::core
