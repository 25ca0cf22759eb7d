// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace quillane::core {

/// A place on the screens, in device pixels.
struct PixelPoint {
    int x = 0;
    int y = 0;

    bool operator==(const PixelPoint&) const = default;
};

struct PixelSize {
    int width = 0;
    int height = 0;

    bool operator==(const PixelSize&) const = default;
};

/// An area of the screens, in device pixels.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] int right() const { return x + width; } ///< the first column after it

    [[nodiscard]] int bottom() const { return y + height; } ///< the first row after it

    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }

    [[nodiscard]] bool contains(PixelPoint point) const {
        return point.x >= x && point.x < right() && point.y >= y && point.y < bottom();
    }

    bool operator==(const PixelRect&) const = default;
};

/// The intersection of two areas; empty when they share nothing.
[[nodiscard]] PixelRect intersection(const PixelRect& one, const PixelRect& other);

/// The area that the user is selecting on the screens with the pointer or with keys. The rubber band includes both the
/// pixel where the button went down and the one under the pointer, so that the last column and row of a screen can be
/// selected.
///
///     AreaSelection selection({{0, 0, 1280, 800}});
///     selection.press({10, 10});
///     selection.pointTo({109, 59});
///     if (selection.release()) … *selection.area() … // 100 × 50 pixels
class AreaSelection {
public:
    /// How far the pointer has to go before a click becomes a drag.
    static constexpr int dragDistance = 3;

    /// The screens, at least one, in their arrangement.
    explicit AreaSelection(std::vector<PixelRect> screens);

    /// The smallest area that holds all screens.
    [[nodiscard]] const PixelRect& bounds() const { return bounds_; }

    /// The selected area; none before anything is selected.
    [[nodiscard]] std::optional<PixelRect> area() const;

    /// The corner that follows the pointer; where the pointer is while nothing is selected.
    [[nodiscard]] PixelPoint corner() const { return corner_; }

    /// The button is held.
    [[nodiscard]] bool isPressed() const { return pressed_; }

    /// The button goes down: drops any earlier selection.
    void press(PixelPoint point);

    /// The pointer is there now.
    void pointTo(PixelPoint point);

    /// The button goes up. False after a click that did not drag.
    bool release();

    /// While set, the pointer moves the whole band instead of its corner.
    void setMoving(bool moving) { moving_ = moving; }

    /// While set, only the side along which the pointer has moved further since then follows it.
    void setLocked(bool locked);

    /// Moves the area. Where nothing is selected, the middle of the screen under the pointer is, as a start.
    void move(int dx, int dy);

    /// Moves the area's lower right corner, as far as one pixel is left. Where nothing is selected, as `move`.
    void resize(int dx, int dy);

private:
    [[nodiscard]] PixelPoint clamped(PixelPoint point) const;
    [[nodiscard]] bool startInTheMiddle();
    void shift(int dx, int dy);

    std::vector<PixelRect> screens_;
    PixelRect bounds_;
    PixelPoint anchor_;
    PixelPoint corner_;
    PixelPoint pointer_;
    PixelPoint lockedAt_;
    bool pressed_ = false;
    bool selects_ = false;
    bool moving_ = false;
    bool locked_ = false;
};

/// The index of the screen that contains the point, or else of the nearest one. The list is not empty.
[[nodiscard]] std::size_t screenAt(const std::vector<PixelRect>& screens, PixelPoint point);

/// Where the label with the area's size goes: at the corner that moves, outside the area if there is room, otherwise
/// inside; always entirely on the screen, as far as it fits.
[[nodiscard]] PixelRect sizeLabelPlace(const PixelRect& area, PixelPoint corner, PixelSize label,
                                       const PixelRect& screen, int gap);

} // namespace quillane::core
