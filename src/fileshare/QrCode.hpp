// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace quillane {

/// A QR code (ISO/IEC 18004): a square of dark and light modules, without the light margin around it.
struct QrCode {
    /// The light margin that a reader needs on every side, in modules.
    static constexpr int quietZone = 4;

    int side = 0;           ///< modules
    std::vector<bool> dark; ///< side × side, row by row from the top

    [[nodiscard]] bool isDark(int x, int y) const {
        return dark[static_cast<std::size_t>(y) * static_cast<std::size_t>(side) + static_cast<std::size_t>(x)];
    }

    /// The smallest code for the bytes that is readable with 15 % damage; none for an empty text and for more than 2331
    /// bytes.
    [[nodiscard]] static std::optional<QrCode> encode(std::string_view text);
};

} // namespace quillane
