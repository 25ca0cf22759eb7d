// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/SecretBytes.hpp"

#include <utility>

#include <openssl/crypto.h>
#include <openssl/rand.h>

namespace quillane::core {

std::optional<SecretBytes> SecretBytes::random(std::size_t count) {
    SecretBytes secret;
    secret.bytes_.resize(count);
    if (RAND_priv_bytes_ex(nullptr, reinterpret_cast<unsigned char*>(secret.bytes_.data()), count, 0) != 1) {
        return std::nullopt;
    }
    return secret;
}

SecretBytes& SecretBytes::operator=(SecretBytes&& other) noexcept {
    if (this != &other) {
        wipe();
        bytes_ = std::exchange(other.bytes_, {});
    }
    return *this;
}

SecretBytes::~SecretBytes() {
    wipe();
}

void SecretBytes::wipe() {
    OPENSSL_cleanse(bytes_.data(), bytes_.size());
}

} // namespace quillane::core
