// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/SecretBytes.hpp"

#include <cstdint>
#include <span>
#include <string>
#include <variant>

namespace quillane::core {

/// How a call to a secret store ended, as an OSStatus of the Security framework (SecBase.h). Stores of other systems
/// return the equivalent status.
enum class SecretStatus : std::int32_t {
    success = 0,
    notAvailable = -25291,          ///< no store, or no answer from it
    authFailed = -25293,            ///< denied
    duplicateItem = -25299,         ///< an item with this name is there already
    itemNotFound = -25300,          ///< no item has this name
    interactionNotAllowed = -25308, ///< locked: only the user could open it
    decode = -26275,                ///< the item does not hold what was stored
};

/// The name of an item: the attributes "service" and "account" of a generic password.
struct SecretName {
    std::string service;
    std::string account;

    bool operator==(const SecretName&) const = default;
};

/// The user's store of secrets: the login keychain, or the Secret Service of the session. Any thread but the main one:
/// a call may wait for another process. The Secret Service has ten seconds and may never prompt the user; macOS may ask
/// whether this application may use the item, and the call waits for the answer.
class SecretStore {
public:
    virtual ~SecretStore() = default;

    /// The secret of the item with exactly this name, or why there is none.
    [[nodiscard]] virtual std::variant<SecretBytes, SecretStatus> find(const SecretName& name) = 0;

    /// Stores a new item that stays on this machine. The label is its name in the store's own window.
    [[nodiscard]] virtual SecretStatus add(const SecretName& name, const std::string& label,
                                           std::span<const std::byte> secret) = 0;
};

} // namespace quillane::core
