// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

namespace quillane::core {

struct Size {
    double width = 0;
    double height = 0;

    bool operator==(const Size&) const = default;
};

/// A point in the coordinates of `Rect`.
struct Point {
    double x = 0;
    double y = 0;

    bool operator==(const Point&) const = default;
};

/// A rectangle in window system coordinates: from the top left of the main screen, y grows downward.
struct ScreenRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool operator==(const ScreenRect&) const = default;
};

/// A rectangle with its origin at the bottom left: y grows upward.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double minX() const { return x; }

    [[nodiscard]] double minY() const { return y; }

    [[nodiscard]] double midX() const { return x + width / 2; }

    [[nodiscard]] double maxX() const { return x + width; }

    [[nodiscard]] double maxY() const { return y + height; }

    /// Shrunk by the distance on every side; never of negative size.
    [[nodiscard]] Rect insetBy(double distance) const {
        const double narrow = width < 2 * distance ? 0 : width - 2 * distance;
        const double low = height < 2 * distance ? 0 : height - 2 * distance;
        return {x + distance, y + distance, narrow, low};
    }

    /// Whether the two share an area, not only an edge.
    [[nodiscard]] bool overlaps(const Rect& other) const {
        return minX() < other.maxX() && other.minX() < maxX() && minY() < other.maxY() && other.minY() < maxY();
    }

    bool operator==(const Rect&) const = default;
};

/// The same rectangle, measured from the bottom left of a main screen of that height.
[[nodiscard]] inline Rect fromTopLeft(const ScreenRect& rect, double mainHeight) {
    return {rect.x, mainHeight - rect.y - rect.height, rect.width, rect.height};
}

/// The same rectangle, measured from the top left of a main screen of that height.
[[nodiscard]] inline ScreenRect fromBottomLeft(const Rect& rect, double mainHeight) {
    return {rect.x, mainHeight - rect.y - rect.height, rect.width, rect.height};
}

} // namespace quillane::core
