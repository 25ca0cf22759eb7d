// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/UpdaterService.hpp"

#include <memory>

namespace quillane {

/// The Sparkle framework inside the application's bundle: its standard updater controller with its own windows. The
/// feed, the key and the interval of six hours stand in the bundle's property list. Nullptr when the bundle holds no
/// Sparkle, as in a build that a developer runs.
[[nodiscard]] std::unique_ptr<UpdaterService> makeMacUpdaterService();

} // namespace quillane
