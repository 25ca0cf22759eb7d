// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/SealedBox.hpp"

#include <algorithm>
#include <climits>
#include <memory>

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

namespace quillane::core::sealedBox {

namespace {

struct Free {
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};

enum class Direction { open = 0, seal = 1 };

/// The length is an int in OpenSSL's calls.
constexpr std::size_t largestStep = std::size_t{1} << 30U;

auto* bytesOf(std::byte* bytes) {
    return reinterpret_cast<unsigned char*>(bytes);
}

/// A box taken apart.
struct Parts {
    std::span<std::byte> nonce;
    std::span<std::byte> text;
    std::span<std::byte> tag;
};

/// Fetched once: OpenSSL would otherwise look up the implementation for every box.
const EVP_CIPHER* aes256Gcm() {
    static const EVP_CIPHER* const found = EVP_CIPHER_fetch(nullptr, "AES-256-GCM", nullptr);
    return found;
}

/// Encrypts or decrypts the text in place and makes or checks the tag.
bool transform(Direction direction, const SecretBytes& key, const Parts& parts) {
    const std::unique_ptr<EVP_CIPHER_CTX, Free> context(EVP_CIPHER_CTX_new());
    const auto* keyBytes = reinterpret_cast<const unsigned char*>(key.bytes().data());
    if (!context || EVP_CipherInit_ex(context.get(), aes256Gcm(), nullptr, keyBytes, bytesOf(parts.nonce.data()),
                                      static_cast<int>(direction)) != 1) {
        return false;
    }
    if (direction == Direction::open &&
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, tagSize, static_cast<void*>(parts.tag.data())) != 1) {
        return false;
    }
    int written = 0;
    for (auto rest = parts.text; !rest.empty();) {
        const auto step = rest.first(std::min(rest.size(), largestStep));
        if (EVP_CipherUpdate(context.get(), bytesOf(step.data()), &written, bytesOf(step.data()),
                             static_cast<int>(step.size())) != 1) {
            return false;
        }
        rest = rest.subspan(step.size());
    }
    unsigned char unused[EVP_MAX_BLOCK_LENGTH];
    if (EVP_CipherFinal_ex(context.get(), unused, &written) != 1) {
        return false;
    }
    return direction == Direction::open ||
           EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, tagSize, static_cast<void*>(parts.tag.data())) == 1;
}

} // namespace

tl::expected<Ends, SealedBoxError> sealInPlace(const SecretBytes& key, std::span<std::byte> buffer) {
    if (key.size() != keySize) {
        return tl::unexpected(SealedBoxError::wrongKeySize);
    }
    Ends ends;
    if (RAND_bytes(bytesOf(ends.nonce.data()), nonceSize) != 1 ||
        !transform(Direction::seal, key, {ends.nonce, buffer, ends.tag})) {
        return tl::unexpected(SealedBoxError::noRandomNumber);
    }
    return ends;
}

void keepUntilExit() {
    OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
}

tl::expected<std::vector<std::byte>, SealedBoxError> seal(const SecretBytes& key,
                                                          std::span<const std::byte> plaintext) {
    std::vector<std::byte> box(nonceSize + plaintext.size() + tagSize);
    std::ranges::copy(plaintext, box.begin() + nonceSize);
    return sealInPlace(key, std::span(box).subspan(nonceSize, plaintext.size())).map([&](const Ends& ends) {
        std::ranges::copy(ends.nonce, box.begin());
        std::ranges::copy(ends.tag, box.end() - tagSize);
        return std::move(box);
    });
}

tl::expected<std::span<const std::byte>, SealedBoxError> openInPlace(const SecretBytes& key, std::span<std::byte> box) {
    if (key.size() != keySize) {
        return tl::unexpected(SealedBoxError::wrongKeySize);
    }
    if (box.size() < nonceSize + tagSize) {
        return tl::unexpected(SealedBoxError::tooShort);
    }
    const auto rest = box.subspan(nonceSize);
    const Parts parts{box.first(nonceSize), rest.first(rest.size() - tagSize), rest.last(tagSize)};
    if (!transform(Direction::open, key, parts)) {
        OPENSSL_cleanse(box.data(), box.size());
        return tl::unexpected(SealedBoxError::notAuthentic);
    }
    return std::span<const std::byte>(parts.text);
}

tl::expected<std::vector<std::byte>, SealedBoxError> open(const SecretBytes& key, std::span<const std::byte> box) {
    std::vector<std::byte> buffer(box.begin(), box.end());
    return openInPlace(key, buffer).map([](std::span<const std::byte> plaintext) {
        return std::vector(plaintext.begin(), plaintext.end());
    });
}

} // namespace quillane::core::sealedBox
