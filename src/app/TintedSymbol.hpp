// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SystemSymbols.hpp"

#include <QIcon>

#include <string>

class QColor;

namespace quillane {

/// The symbol in a colour, in the sizes of menu rows, buttons and windows; a null icon for names without a symbol.
[[nodiscard]] QIcon tintedSymbol(const SystemSymbols& symbols, const std::string& name, const QColor& color);

} // namespace quillane
