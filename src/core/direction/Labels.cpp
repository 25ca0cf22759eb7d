// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/Labels.hpp"

#include "core/support/Text.hpp"

#include <algorithm>
#include <array>

namespace quillane::core {

bool Labels::matches(std::string_view shown) const {
    const auto visible = withoutDirectionMarks(shown);
    const auto text = trimmedOfWhiteSpace(visible);
    const std::array all{english, british, hebrew, arabic, persian, urdu, french, german, russian, spanish};
    return !text.empty() && std::ranges::find(all, text) != all.end();
}

} // namespace quillane::core
