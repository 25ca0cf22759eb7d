// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultKey.hpp"

#include "core/support/SealedBox.hpp"

#include <utility>
#include <variant>

namespace quillane::core {

tl::expected<SecretBytes, SecretStatus> obtainVaultKey(SecretStore& store) {
    const SecretName name{vaultKeyService, vaultKeyAccount};
    auto found = store.find(name);
    if (auto* key = std::get_if<SecretBytes>(&found)) {
        if (key->size() != sealedBox::keySize) {
            return tl::unexpected(SecretStatus::decode);
        }
        return std::move(*key);
    }
    if (const auto status = std::get<SecretStatus>(found); status != SecretStatus::itemNotFound) {
        return tl::unexpected(status);
    }
    auto key = SecretBytes::random(sealedBox::keySize);
    if (!key) {
        return tl::unexpected(SecretStatus::notAvailable);
    }
    if (const auto status = store.add(name, vaultKeyLabel, key->bytes()); status != SecretStatus::success) {
        return tl::unexpected(status);
    }
    return std::move(*key);
}

} // namespace quillane::core
