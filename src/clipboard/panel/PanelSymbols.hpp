// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QHash>
#include <QIcon>
#include <QPixmap>

#include <functional>
#include <string>
#include <utility>

namespace quillane {

/// Symbols in the colours and sizes of the panel, each drawn once.
class PanelSymbols {
public:
    using Source = std::function<QIcon(const std::string& name, const QColor& color)>;

    explicit PanelSymbols(Source source) : source_(std::move(source)) {}

    /// The symbol in a square with sides of this many points, sharp at the pixel ratio.
    [[nodiscard]] QPixmap pixmap(const char* name, const QColor& color, int size, qreal ratio);

    [[nodiscard]] QIcon icon(const char* name, const QColor& color) const {
        return source_ ? source_(name, color) : QIcon();
    }

private:
    Source source_;
    QHash<QString, QPixmap> drawn_;
};

} // namespace quillane
