// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/SecretStore.hpp"

#include <chrono>

namespace quillane {

/// The Secret Service of the session (Secret Service API Draft, freedesktop.org), by libsecret. New items go into the
/// default collection; a service without one counts as no store. Secrets are encrypted on the bus. A prompt of the
/// service is refused and never shown. Every call looks for the service again, so one that starts later is found.
class SecretServiceStore final : public core::SecretStore {
public:
    explicit SecretServiceStore(std::chrono::milliseconds timeout = std::chrono::seconds(10)) : timeout_(timeout) {}

    [[nodiscard]] std::variant<core::SecretBytes, core::SecretStatus> find(const core::SecretName& name) override;
    [[nodiscard]] core::SecretStatus add(const core::SecretName& name, const std::string& label,
                                         std::span<const std::byte> secret) override;

private:
    std::chrono::milliseconds timeout_; ///< for one call as a whole
};

} // namespace quillane
