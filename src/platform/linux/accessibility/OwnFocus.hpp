// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/accessibility/AtspiFacts.hpp"

namespace quillane {

/// The focused widget of this process, which cannot be asked over the bus because it does not answer while it waits.
/// Its object has no bus name and is valid only while it has the focus.
[[nodiscard]] std::optional<AtspiObject> ownFocusedObject();

/// All facts about this process or its focused widget; nullptr for anything else.
[[nodiscard]] std::shared_ptr<AtspiFacts> ownFacts(const AtspiObject& object);

/// The object that stands for this process.
[[nodiscard]] AtspiObject ownApplication();

} // namespace quillane
