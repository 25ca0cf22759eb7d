// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/InputSourceCycle.hpp"

#include <algorithm>
#include <vector>

namespace quillane::core::inputSourceCycle {

std::optional<std::string> nextID(std::string_view current, std::span<const std::string> ids) {
    std::vector<std::string_view> distinct;
    for (const auto& id : ids) {
        if (std::ranges::find(distinct, id) == distinct.end()) {
            distinct.push_back(id);
        }
    }
    if (distinct.size() < 2) {
        return std::nullopt;
    }
    const auto found = std::ranges::find(distinct, current);
    const bool wraps = found == distinct.end() || std::next(found) == distinct.end();
    return std::string(wraps ? distinct.front() : *std::next(found));
}

} // namespace quillane::core::inputSourceCycle
