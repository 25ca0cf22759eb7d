// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/SecretBytes.hpp"

#include <tl/expected.hpp>

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace quillane::core {

enum class SealedBoxError {
    wrongKeySize,   ///< the key is not 32 bytes
    tooShort,       ///< shorter than nonce and tag together
    notAuthentic,   ///< damaged, tampered with, or sealed under another key
    noRandomNumber, ///< the generator of the nonce failed
};

/// AES-256-GCM in the combined format: a nonce of 12 bytes, the ciphertext, a tag of 16 bytes (NIST SP 800-38D).
/// Without associated data; every box has a new random nonce.
namespace sealedBox {

inline constexpr std::size_t keySize = 32;
inline constexpr std::size_t nonceSize = 12;
inline constexpr std::size_t tagSize = 16;

/// Call before anything is encrypted, so that boxes can be sealed in an exit handler too: OpenSSL would otherwise free
/// itself in a handler of its own, which runs before those that were registered earlier (OPENSSL_init_crypto(3)).
void keepUntilExit();

[[nodiscard]] tl::expected<std::vector<std::byte>, SealedBoxError> seal(const SecretBytes& key,
                                                                        std::span<const std::byte> plaintext);

/// The parts of a box beside its ciphertext.
struct Ends {
    std::array<std::byte, nonceSize> nonce{}; ///< comes first
    std::array<std::byte, tagSize> tag{};     ///< comes last
};

/// The same in the plaintext's own buffer, which on success holds the ciphertext. On failure its contents are
/// meaningless.
[[nodiscard]] tl::expected<Ends, SealedBoxError> sealInPlace(const SecretBytes& key, std::span<std::byte> buffer);

[[nodiscard]] tl::expected<std::vector<std::byte>, SealedBoxError> open(const SecretBytes& key,
                                                                        std::span<const std::byte> box);

/// Opens a box in its own buffer and returns the part that now holds the plaintext. On failure the buffer is wiped.
[[nodiscard]] tl::expected<std::span<const std::byte>, SealedBoxError> openInPlace(const SecretBytes& key,
                                                                                   std::span<std::byte> box);

} // namespace sealedBox

} // namespace quillane::core
