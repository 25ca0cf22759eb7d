// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SystemSymbols.hpp"

#include <QColor>
#include <QIcon>

#include <map>
#include <string>
#include <utility>

namespace quillane {

/// The symbol in a colour, in the sizes of menu rows, buttons and windows; a null icon for names without a symbol.
[[nodiscard]] QIcon tintedSymbol(const SystemSymbols& symbols, const std::string& name, const QColor& color);

/// Tinted symbols that are used again and again, each drawn once in each size. Names and colours are few. The icons
/// draw while they are in use, so the symbols must outlive them.
class SymbolIcons {
public:
    explicit SymbolIcons(const SystemSymbols& symbols) : symbols_(symbols) {}

    [[nodiscard]] QIcon icon(const std::string& name, const QColor& color);

private:
    const SystemSymbols& symbols_;
    std::map<std::pair<std::string, QRgb>, QIcon> drawn_;
};

} // namespace quillane
