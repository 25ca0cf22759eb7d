// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace quillane::core {

/// A secret in memory, wiped when it is destroyed or moved away. It cannot be copied, printed or compared.
class SecretBytes {
public:
    SecretBytes() = default;

    /// Copies the bytes; the caller must wipe its own.
    explicit SecretBytes(std::span<const std::byte> bytes) : bytes_(bytes.begin(), bytes.end()) {}

    /// New random bytes from the cryptographic generator, or none when it fails.
    [[nodiscard]] static std::optional<SecretBytes> random(std::size_t count);

    SecretBytes(SecretBytes&& other) noexcept = default; // moves the one buffer
    SecretBytes& operator=(SecretBytes&& other) noexcept;
    ~SecretBytes();

    [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

    [[nodiscard]] std::size_t size() const { return bytes_.size(); }

private:
    void wipe();

    std::vector<std::byte> bytes_;
};

} // namespace quillane::core
