// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AgentControl.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// The lines that go over the control socket: JSON objects (RFC 8259) {"command": string, "arguments": [string]} and
/// {"ok": Boolean, "text": string}. A line that is anything else decodes to none.
namespace quillane::control {

inline constexpr std::size_t maximumLineBytes = 64 * 1024;

[[nodiscard]] std::string encode(const ControlRequest& request);
[[nodiscard]] std::string encode(const ControlReply& reply);
[[nodiscard]] std::optional<ControlRequest> decodeRequest(std::string_view line);
[[nodiscard]] std::optional<ControlReply> decodeReply(std::string_view line);

} // namespace quillane::control
