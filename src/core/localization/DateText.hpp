// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/AppLanguage.hpp"
#include "core/support/Date.hpp"

#include <string>

namespace quillane::core {

/// The day with the abbreviated name of its month and the time without seconds, in the locale of the language with
/// Western digits and in the time zone of the machine: "Nov 16, 2025, 3:33 PM".
[[nodiscard]] std::string dateText(Date date, AppLanguage language);

} // namespace quillane::core
