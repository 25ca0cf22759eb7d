// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/tour/Tour.hpp"

namespace quillane::live {

/// Shares a file with a server of this machine and fetches it back through the link. The agent must not run; it ends
/// again.
void shareTour(Tour& tour, LiveDesktop& desktop);

} // namespace quillane::live
