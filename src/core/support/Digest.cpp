// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Digest.hpp"

#include <array>
#include <cstdint>
#include <new>

#include <openssl/evp.h>

namespace quillane::core {

namespace {

/// SHA-256 of bytes in memory can only fail by allocation.
void require(int succeeded) {
    if (succeeded != 1) {
        throw std::bad_alloc();
    }
}

/// Fetched once: OpenSSL would otherwise look up the implementation for every digest.
const EVP_MD* sha256() {
    static const EVP_MD* const found = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    return found;
}

} // namespace

void ChunkDigest::Free::operator()(evp_md_ctx_st* context) const {
    EVP_MD_CTX_free(context);
}

ChunkDigest::ChunkDigest() : context_(EVP_MD_CTX_new()) {
    require(context_ ? 1 : 0);
    require(EVP_DigestInit_ex(context_.get(), sha256(), nullptr));
}

void ChunkDigest::add(std::span<const std::byte> chunk) {
    std::array<std::uint8_t, 8> length{};
    std::uint64_t rest = chunk.size();
    for (auto byte = length.rbegin(); byte != length.rend(); ++byte, rest >>= 8U) {
        *byte = static_cast<std::uint8_t>(rest & 0xffU);
    }
    require(EVP_DigestUpdate(context_.get(), length.data(), length.size()));
    require(EVP_DigestUpdate(context_.get(), chunk.data(), chunk.size()));
}

void ChunkDigest::add(std::string_view chunk) {
    add(std::as_bytes(std::span(chunk)));
}

std::string ChunkDigest::finish() {
    std::array<std::uint8_t, 32> digest{};
    require(EVP_DigestFinal_ex(context_.get(), digest.data(), nullptr));
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * digest.size());
    for (const auto byte : digest) {
        text += digits[byte >> 4U];
        text += digits[byte & 0x0fU];
    }
    return text;
}

} // namespace quillane::core
