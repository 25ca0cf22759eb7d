// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/SecretStore.hpp"

namespace quillane {

/// Generic passwords of the login keychain (Security framework: SecItemCopyMatching, SecItemAdd). A new item can be
/// read after the first unlock and stays on this Mac.
class MacSecretStore final : public core::SecretStore {
public:
    [[nodiscard]] std::variant<core::SecretBytes, core::SecretStatus> find(const core::SecretName& name) override;
    [[nodiscard]] core::SecretStatus add(const core::SecretName& name, const std::string& label,
                                         std::span<const std::byte> secret) override;
};

} // namespace quillane
