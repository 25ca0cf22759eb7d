// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/diagnosis/Diagnosis.hpp"
#include "platform/Accessibility.hpp"
#include "platform/AgentControl.hpp"
#include "platform/Platform.hpp"
#include "platform/Workspace.hpp"

#include <filesystem>
#include <optional>
#include <string>

/// Gathers the facts for a diagnosis from the platform interfaces, and prints its lines.
namespace quillane::doctor {

/// What the program is, whoever asks.
[[nodiscard]] core::DiagnosisFacts programFacts(const std::string& version, const core::ApplicationLocation& location,
                                                const std::filesystem::path& home);

/// Only the agent's own permissions mean anything where they are given to programs in a list.
[[nodiscard]] core::SessionFacts sessionFacts(const Platform& platform, core::Respondent respondent);

/// The focused element of the application in front; waits at most half a second for that.
[[nodiscard]] std::optional<core::FocusFacts> focusFacts(Accessibility& accessibility, const Workspace& workspace);

/// The diagnosis as one line of JSON (RFC 8259), or as text with one line for each finding and one that sums up.
/// A reply with a problem makes the command fail.
[[nodiscard]] ControlReply report(const core::DiagnosisFacts& facts, bool json);

} // namespace quillane::doctor
