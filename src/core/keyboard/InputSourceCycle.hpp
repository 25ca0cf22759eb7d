// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillane::core::inputSourceCycle {

/// The identifier after `current` in the list without its duplicates, the last one wrapping to the first; the first
/// when `current` is not listed; none when there are fewer than two distinct identifiers.
[[nodiscard]] std::optional<std::string> nextID(std::string_view current, std::span<const std::string> ids);

} // namespace quillane::core::inputSourceCycle
