// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillane::core {

/// A universally unique identifier (RFC 9562).
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// A new random one (version 4), from the system's generator.
    [[nodiscard]] static Uuid random();

    /// Reads the canonical form of 36 characters, in either letter case.
    [[nodiscard]] static std::optional<Uuid> parse(std::string_view text);

    /// The canonical form in upper case, "E621E1F8-C36C-495A-93FC-0C247A3E6E5F".
    [[nodiscard]] std::string toString() const;

    bool operator==(const Uuid&) const = default;

    /// The order of the canonical forms as text. Written out because arrays have no `<=>` in the standard library of
    /// macOS 13.
    std::strong_ordering operator<=>(const Uuid& other) const {
        return bytes < other.bytes    ? std::strong_ordering::less
               : bytes == other.bytes ? std::strong_ordering::equal
                                      : std::strong_ordering::greater;
    }
};

} // namespace quillane::core

template <>
struct std::hash<quillane::core::Uuid> {
    std::size_t operator()(const quillane::core::Uuid& uuid) const noexcept {
        std::size_t value = 0;
        for (std::size_t i = 0; i < sizeof value; ++i) {
            value = value << 8U | uuid.bytes[i];
        }
        return value;
    }
};
