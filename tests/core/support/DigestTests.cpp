// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/Digest.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace quillane::core {
namespace {

std::string digestOf(std::initializer_list<std::string_view> chunks) {
    ChunkDigest digest;
    for (const auto chunk : chunks) {
        digest.add(chunk);
    }
    return digest.finish();
}

// Computed with another implementation of SHA-256.
TEST(ChunkDigest, PrecedesEachChunkByItsLength) {
    EXPECT_EQ(digestOf({}), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(digestOf({""}), "af5570f5a1810b7af78caf4bc70a660f0df51e42baf91d4de5b2328de0e83dfc");
    EXPECT_EQ(digestOf({"abc"}), "c3494ca1a2cf8eeb8a11ded316fb55b83c3bbbedb6313cd50415251e5d09e12f");
    EXPECT_EQ(digestOf({"text", "שלום"}), "61c3448f11ac5772fe6cdb845cdf71821b04ac17e4d4e5db4199e99f1109af43");
    EXPECT_EQ(digestOf({std::string(70'000, 'x')}), "a9d42b4ecc000ccb5057ddb73ed9ee81501ddbc2883e9d19af255f7757841e53");
}

TEST(ChunkDigest, DependsOnWhereAChunkEnds) {
    EXPECT_NE(digestOf({"ab", "c"}), digestOf({"a", "bc"}));
    EXPECT_NE(digestOf({"abc"}), digestOf({"abc", ""}));
}

} // namespace
} // namespace quillane::core
