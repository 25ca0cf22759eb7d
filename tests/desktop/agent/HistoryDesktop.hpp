// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/ClipboardOptions.hpp"
#include "desktop/agent/LiveAgent.hpp"

namespace quillane::live {

/// An unlocked keyring, in which the clipboard history keeps its key.
[[nodiscard]] tl::expected<ChildProcess, std::string> startKeyring(LiveDesktop& desktop);

/// Writes the agent's settings with these options of the clipboard history, as the settings window stores them, and
/// with more entries as `writeAgentSettings` takes them.
[[nodiscard]] bool writeHistorySettings(const LiveDesktop& desktop, const core::ClipboardOptions& options,
                                        std::map<std::string, std::string> more = {});

} // namespace quillane::live
