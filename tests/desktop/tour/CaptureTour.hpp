// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/tour/Tour.hpp"

namespace quillane::live {

/// Captures an area of the screen to the clipboard and opens the picture in another program. The agent must not run; it
/// ends again.
void captureTour(Tour& tour, LiveDesktop& desktop);

} // namespace quillane::live
