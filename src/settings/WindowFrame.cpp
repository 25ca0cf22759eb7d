// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/WindowFrame.hpp"

#include <QStringList>

#include <algorithm>
#include <array>

namespace quillane::windowFrame {

std::string stored(const QRect& frame) {
    return QStringLiteral("%1 %2 %3 %4")
        .arg(frame.x())
        .arg(frame.y())
        .arg(frame.width())
        .arg(frame.height())
        .toStdString();
}

std::optional<QRect> parse(const std::string& stored) {
    const auto parts = QString::fromStdString(stored).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    std::array<int, 4> numbers{};
    if (parts.size() < static_cast<qsizetype>(numbers.size())) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        bool ok = false;
        numbers.at(i) = parts.at(static_cast<qsizetype>(i)).toInt(&ok);
        if (!ok) {
            return std::nullopt;
        }
    }
    const QRect frame(numbers[0], numbers[1], numbers[2], numbers[3]);
    return frame.isEmpty() ? std::nullopt : std::optional(frame);
}

bool isReachable(const QRect& frame, const QRect& area) {
    const auto shared = area.intersected(QRect(frame.left(), frame.top(), frame.width(), 40));
    return shared.width() >= 80 && shared.height() >= 20;
}

QRect fitted(const QRect& frame, const QRect& area) {
    const auto size = frame.size().boundedTo(area.size());
    return {QPoint(std::clamp(frame.x(), area.x(), area.x() + area.width() - size.width()),
                   std::clamp(frame.y(), area.y(), area.y() + area.height() - size.height())),
            size};
}

} // namespace quillane::windowFrame
