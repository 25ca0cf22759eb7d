// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/SealedBox.hpp"

#include "core/support/Digest.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace quillane::core {
namespace {

std::vector<std::byte> bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

std::vector<std::byte> hex(std::string_view digits) {
    std::vector<std::byte> bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        bytes.push_back(static_cast<std::byte>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16)));
    }
    return bytes;
}

SecretBytes keyOf(unsigned char byte) {
    return SecretBytes(std::vector(32, static_cast<std::byte>(byte)));
}

TEST(SealedBox, OpensWhatItSealed) {
    const auto key = *SecretBytes::random(32);
    for (const std::size_t size : {0U, 1U, 15U, 16U, 17U, 100'000U}) {
        std::vector<std::byte> plaintext(size, std::byte{7});
        const auto box = sealedBox::seal(key, plaintext);
        ASSERT_TRUE(box);
        EXPECT_EQ(box->size(), size + 28);
        EXPECT_EQ(sealedBox::open(key, *box), plaintext);
    }
}

/// Test case 16 of "The Galois/Counter Mode of Operation" without its associated data is test case 15.
TEST(SealedBox, OpensTheBoxOfAPublishedVector) {
    const SecretBytes key(hex("feffe9928665731c6d6a8f9467308308feffe9928665731c6d6a8f9467308308"));
    const auto box = hex("cafebabefacedbaddecaf888"
                         "522dc1f099567d07f47f37a32a84427d643a8cdcbfe5c0c97598a2bd2555d1aa"
                         "8cb08e48590dbb3da7b08b1056828838c5f61e6393ba7a0abcc9f662898015ad"
                         "b094dac5d93471bdec1a502270e3cc6c");
    EXPECT_EQ(sealedBox::open(key, box), hex("d9313225f88406e5a55909c5aff5269a86a7a9531534f7da2e4c303d8a318a72"
                                             "1c3c0c95956809532fcf0e2449a6b525b16aedf5aa0de657ba637b391aafd255"));
}

TEST(SealedBox, EveryBoxHasANonceOfItsOwn) {
    const auto key = keyOf(1);
    const auto one = sealedBox::seal(key, bytesOf("same"));
    const auto two = sealedBox::seal(key, bytesOf("same"));
    EXPECT_FALSE(std::equal(one->begin(), one->begin() + 12, two->begin()));
    EXPECT_NE(one, two);
}

TEST(SealedBox, AnyDamageIsFound) {
    const auto key = keyOf(1);
    const auto box = *sealedBox::seal(key, bytesOf("the quick brown fox"));
    for (std::size_t i = 0; i < box.size(); ++i) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            auto damaged = box;
            damaged[i] ^= std::byte{1} << bit;
            EXPECT_EQ(sealedBox::open(key, damaged).error(), SealedBoxError::notAuthentic);
        }
    }
    for (std::size_t size = 0; size < box.size(); ++size) {
        const auto opened = sealedBox::open(key, std::span(box).first(size));
        EXPECT_EQ(opened.error(), size < 28 ? SealedBoxError::tooShort : SealedBoxError::notAuthentic);
    }
}

TEST(SealedBox, AnotherKeyDoesNotOpenIt) {
    const auto box = *sealedBox::seal(keyOf(1), bytesOf("x"));
    EXPECT_EQ(sealedBox::open(keyOf(2), box).error(), SealedBoxError::notAuthentic);
}

TEST(SealedBox, TheKeyHasExactly32Bytes) {
    for (const std::size_t size : {0U, 16U, 31U, 33U}) {
        const auto key = *SecretBytes::random(size);
        EXPECT_EQ(sealedBox::seal(key, {}).error(), SealedBoxError::wrongKeySize);
        EXPECT_EQ(sealedBox::open(key, std::vector<std::byte>(28)).error(), SealedBoxError::wrongKeySize);
    }
}

TEST(SealedBox, NothingOfADamagedBoxIsLeftInItsBuffer) {
    auto box = *sealedBox::seal(keyOf(1), bytesOf("secret"));
    box.back() ^= std::byte{1};
    EXPECT_FALSE(sealedBox::openInPlace(keyOf(1), box));
    EXPECT_TRUE(std::ranges::all_of(box, [](std::byte byte) { return byte == std::byte{0}; }));
}

TEST(SecretBytes, MovesWithoutLeavingACopy) {
    SecretBytes a(bytesOf("0123456789"));
    const auto* memory = a.bytes().data();
    SecretBytes b = std::move(a);
    EXPECT_EQ(b.bytes().data(), memory);
    EXPECT_EQ(a.size(), 0U); // NOLINT(bugprone-use-after-move)
    SecretBytes c(bytesOf("x"));
    c = std::move(b);
    EXPECT_EQ(c.bytes().data(), memory);
}

TEST(ChunkDigest, ChunksAreLengthPrefixed) {
    ChunkDigest none;
    EXPECT_EQ(none.finish(), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    ChunkDigest one;
    one.add(std::string_view("ab"));
    ChunkDigest two;
    two.add(std::string_view("a"));
    two.add(std::string_view("b"));
    EXPECT_NE(one.finish(), two.finish());
}

} // namespace
} // namespace quillane::core
