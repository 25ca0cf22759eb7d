// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/SecretBytes.hpp"
#include "core/support/SecretStore.hpp"

#include <tl/expected.hpp>

namespace quillane::core {

inline constexpr const char* vaultKeyService = "com.quillane.app.clipboard";
inline constexpr const char* vaultKeyAccount = "local-encryption-key";
inline constexpr const char* vaultKeyLabel = "Quillane clipboard history encryption";

/// The key of the clipboard vault: the stored one of exactly 32 bytes or, when there is none yet, a new random one that
/// has been stored. Nothing is ever replaced: any other answer of the store is returned as the error. Blocks as the
/// store does.
[[nodiscard]] tl::expected<SecretBytes, SecretStatus> obtainVaultKey(SecretStore& store);

} // namespace quillane::core
