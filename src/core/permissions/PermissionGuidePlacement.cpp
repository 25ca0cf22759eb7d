// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/permissions/PermissionGuidePlacement.hpp"

#include <algorithm>

namespace quillane::core::permissionGuidePlacement {

namespace {

Rect besideWindow(const Rect& window, const Rect& area, Size card) {
    const Rect below{window.maxX() - card.width, window.minY() - margin - card.height, card.width, card.height};
    if (below.minY() >= area.minY()) {
        return below;
    }
    const Rect right{window.maxX() + margin, window.minY(), card.width, card.height};
    if (right.maxX() <= area.maxX()) {
        return right;
    }
    const Rect left{window.minX() - margin - card.width, window.minY(), card.width, card.height};
    if (left.minX() >= area.minX()) {
        return left;
    }
    return {window.maxX() - card.width, window.minY() + margin, card.width, card.height};
}

} // namespace

Rect frame(const std::optional<Rect>& window, const Rect& visibleScreen, Size size) {
    const auto area = visibleScreen.insetBy(margin);
    const Size card{std::min(size.width, area.width), std::min(size.height, area.height)};
    auto result = window ? besideWindow(*window, area, card)
                         : Rect{area.midX() - card.width / 2, area.minY(), card.width, card.height};
    result.x = std::clamp(result.x, area.minX(), std::max(area.minX(), area.maxX() - card.width));
    result.y = std::clamp(result.y, area.minY(), std::max(area.minY(), area.maxY() - card.height));
    return result;
}

} // namespace quillane::core::permissionGuidePlacement
