// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/tour/Tour.hpp"

namespace quillane::live {

/// Turns a text area in a Hebrew Chromium and a paragraph in an Arabic LibreOffice Writer by chords, and turns them
/// back. The agent must not run; it ends again.
void directionTour(Tour& tour, LiveDesktop& desktop);

} // namespace quillane::live
