// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.hpp"

#include <stdexcept>
#include <string>

namespace quillane::fakes {

/// Carries out a row's action as a menu would. Throws when a menu would not let it be chosen.
inline void choose(const MenuRow& row) {
    if (row.kind != MenuRow::Kind::item || !row.enabled || !row.action) {
        throw std::logic_error("This row cannot be chosen: " + row.title);
    }
    const auto action = row.action; // the action may replace the menu
    action();
}

} // namespace quillane::fakes
