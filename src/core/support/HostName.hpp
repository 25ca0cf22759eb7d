// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillane::core {

/// A host name in any script as the domain name system spells it: in ASCII and in lower case ("xn--…").
/// Non-transitional processing with the rules for bidirectional names, joiners and ASCII (UTS #46); none for a name
/// that breaks them.
[[nodiscard]] std::optional<std::string> asciiHostName(std::string_view name);

} // namespace quillane::core
