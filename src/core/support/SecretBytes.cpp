// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/SecretBytes.hpp"

#include <algorithm>
#include <new>
#include <utility>

#include <openssl/crypto.h>
#include <openssl/rand.h>
#include <sys/mman.h>

namespace quillane::core {

SecretBytes::SecretBytes(std::size_t count) {
    if (count == 0) {
        return;
    }
    void* pages = ::mmap(nullptr, count, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        throw std::bad_alloc();
    }
    static_cast<void>(::mlock(pages, count));
#ifdef MADV_DONTDUMP
    static_cast<void>(::madvise(pages, count, MADV_DONTDUMP));
#endif
    bytes_ = {static_cast<std::byte*>(pages), count};
}

SecretBytes::SecretBytes(std::span<const std::byte> bytes) : SecretBytes(bytes.size()) {
    std::ranges::copy(bytes, bytes_.begin());
}

std::optional<SecretBytes> SecretBytes::random(std::size_t count) {
    SecretBytes secret(count);
    if (RAND_priv_bytes_ex(nullptr, reinterpret_cast<unsigned char*>(secret.bytes_.data()), count, 0) != 1) {
        return std::nullopt;
    }
    return secret;
}

SecretBytes::SecretBytes(SecretBytes&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}

SecretBytes& SecretBytes::operator=(SecretBytes&& other) noexcept {
    const SecretBytes before(std::move(*this)); // wiped at the end
    bytes_ = std::exchange(other.bytes_, {});
    return *this;
}

SecretBytes::~SecretBytes() {
    if (!bytes_.empty()) {
        OPENSSL_cleanse(bytes_.data(), bytes_.size());
        ::munmap(bytes_.data(), bytes_.size());
    }
}

} // namespace quillane::core
