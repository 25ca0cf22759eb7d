// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

namespace quillane::fuzz {

/// Aborts when a condition does not hold, which the fuzzer reports with the input.
inline void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

inline std::span<const std::byte> bytesOf(const std::uint8_t* data, std::size_t size) {
    return std::as_bytes(std::span(data, size));
}

} // namespace quillane::fuzz
