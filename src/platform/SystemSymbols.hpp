// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/StatusItem.hpp"

#include <optional>
#include <string_view>

namespace quillane {

/// The icons of rows, buttons and windows, under the names of the system symbols of macOS ("globe"). Main thread.
class SystemSymbols {
public:
    virtual ~SystemSymbols() = default;

    /// The symbol in a square with sides of this many pixels, to be tinted; none when the desktop has no symbol of that
    /// name or the side is below 1.
    [[nodiscard]] virtual std::optional<TemplateImage> image(std::string_view name, int pixels) const = 0;
};

} // namespace quillane
