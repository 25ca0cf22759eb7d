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

/// AES-256-GCM in combined form: a nonce of 12 bytes, the ciphertext, a tag of 16 bytes (NIST SP 800-38D). There is no
/// associated data, and every box has a fresh random nonce.
namespace sealedBox {

inline constexpr std::size_t keySize = 32;
inline constexpr std::size_t nonceSize = 12;
inline constexpr std::size_t tagSize = 16;

[[nodiscard]] tl::expected<std::vector<std::byte>, SealedBoxError> seal(const SecretBytes& key,
                                                                        std::span<const std::byte> plaintext);

/// What a box has beside its ciphertext.
struct Ends {
    std::array<std::byte, nonceSize> nonce{}; ///< comes first
    std::array<std::byte, tagSize> tag{};     ///< comes last
};

/// The same over the plaintext's own buffer, which on success is the ciphertext. On failure its contents are of no use.
[[nodiscard]] tl::expected<Ends, SealedBoxError> sealInPlace(const SecretBytes& key, std::span<std::byte> buffer);

[[nodiscard]] tl::expected<std::vector<std::byte>, SealedBoxError> open(const SecretBytes& key,
                                                                        std::span<const std::byte> box);

/// Opens a box over its own buffer and returns the part of it that now is the plaintext. On failure the buffer is
/// wiped.
[[nodiscard]] tl::expected<std::span<const std::byte>, SealedBoxError> openInPlace(const SecretBytes& key,
                                                                                   std::span<std::byte> box);

} // namespace sealedBox

} // namespace quillane::core
