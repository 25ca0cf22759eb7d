// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/AppLanguage.hpp"
#include "core/support/Date.hpp"

#include <string>

namespace quillane::core {

/// The day in its abbreviated form and the time in its short one, in the locale of the language and the time zone of
/// the machine: "Nov 16, 2025, 3:33 PM".
[[nodiscard]] std::string dateText(Date date, AppLanguage language);

} // namespace quillane::core
