// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/RuntimeStatus.hpp"
#include "platform/StatusItem.hpp"

namespace quillane::statusBarArtwork {

/// The monochrome wordmark "RTL" for the status item: plain; dimmed above a pause sign; above a coffee cup.
/// `points` is the side of the square image, `scale` the pixels per point. The letters are drawn, not set in a font, so
/// the mark looks the same on every machine.
[[nodiscard]] TemplateImage image(StatusMark mark, int points = 22, double scale = 2);

} // namespace quillane::statusBarArtwork
