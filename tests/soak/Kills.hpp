// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "soak/SoakDesktop.hpp"

#include <random>

namespace quillane::soak {

/// Kills the agent at random moments, while it starts or while it records copies, and checks each time that the history
/// can be read, that no copy that was due is missing, and that no key is down. Returns whether everything held.
[[nodiscard]] bool killAtRandom(SoakDesktop& desktop, int kills, unsigned seed);

} // namespace quillane::soak
