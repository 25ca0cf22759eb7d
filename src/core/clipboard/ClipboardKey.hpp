// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/SecretBytes.hpp"
#include "core/support/SecretStore.hpp"

#include <tl/expected.hpp>

namespace quillane::core {

inline constexpr const char* clipboardKeyService = "com.quillane.app.clipboard";
inline constexpr const char* clipboardKeyAccount = "local-encryption-key";
inline constexpr const char* clipboardKeyLabel = "Quillane clipboard history encryption";

/// The key of the clipboard vault: the stored one of exactly 32 bytes or, when there is none yet, a new random one that
/// has been stored. Nothing is ever replaced: any other answer of the store is returned as the error. Blocks as the
/// store does.
[[nodiscard]] tl::expected<SecretBytes, SecretStatus> obtainClipboardKey(SecretStore& store);

} // namespace quillane::core
