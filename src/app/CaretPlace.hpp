// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Accessibility.hpp"

#include <optional>

namespace quillane {

/// Where the text cursor of an application is on the screen, or the end of its selection; none when the application
/// does not say, or says a place outside of the field. Waits for the application, at most 0.15 s a call; one that has
/// not answered in time is not asked further.
[[nodiscard]] std::optional<AXRect> caretPlace(Accessibility& accessibility, pid_t pid);

} // namespace quillane
