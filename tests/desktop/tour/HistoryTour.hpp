// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/tour/Tour.hpp"

namespace quillane::live {

/// Copies are collected, found and pasted.
void historyTour(Tour& tour, LiveDesktop& desktop);

} // namespace quillane::live
