// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/UpdaterService.hpp"

#include <memory>

namespace quillane {

/// The Sparkle framework inside the application's bundle: its standard updater controller with its own windows. The
/// feed, the key and the interval of six hours are in the bundle's property list. Nullptr when the bundle contains no
/// Sparkle, as in a developer's build.
[[nodiscard]] std::unique_ptr<UpdaterService> makeMacUpdaterService();

} // namespace quillane
