// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace quillane::core {

/// A secret in memory pages of its own: locked, so that it is never written to swap (mlock(2)), left out of core dumps
/// where the system can (madvise(2), MADV_DONTDUMP), and wiped when it is destroyed or moved away. It cannot be copied,
/// printed or compared. For keys: each takes at least a page, and users may lock only few.
class SecretBytes {
public:
    SecretBytes() = default;

    /// Copies the bytes; the caller must wipe its own. Throws std::bad_alloc without memory. A system that locks no
    /// more pages is not an error: the other protections hold.
    explicit SecretBytes(std::span<const std::byte> bytes);

    /// New random bytes from the cryptographic generator, or none when it fails.
    [[nodiscard]] static std::optional<SecretBytes> random(std::size_t count);

    SecretBytes(SecretBytes&& other) noexcept; // moves the pages
    SecretBytes& operator=(SecretBytes&& other) noexcept;
    ~SecretBytes();

    [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

    [[nodiscard]] std::size_t size() const { return bytes_.size(); }

private:
    explicit SecretBytes(std::size_t count);

    std::span<std::byte> bytes_; ///< from the start of the pages
};

} // namespace quillane::core
