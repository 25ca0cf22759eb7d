// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/tour/Tour.hpp"

namespace quillane::live {

/// Keep Awake is turned on and off, every page of the settings is shown in three languages, and chords turn the text
/// box of the testing page.
void settingsTour(Tour& tour, LiveDesktop& desktop);

} // namespace quillane::live
