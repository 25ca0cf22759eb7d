// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/KeyboardLayout.hpp"
#include "standins/macos/Values.hpp"

#include <Carbon/KeyLayouts.h>

/// The data of a layout: here it only refers to its keys, which must outlive it.
struct UCKeyboardLayout {
    const quillane::core::KeyboardLayout* keys;
};

namespace quillane::standin {

/// The layout data of an input source.
[[nodiscard]] Value layoutData(const core::KeyboardLayout& keys);

} // namespace quillane::standin
