// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace quillane::core {

/// SHA-256 (FIPS 180-4) over a sequence of chunks. Each chunk is preceded by its length in bytes as an unsigned 64-bit
/// big-endian integer, so that two different sequences never feed the same bytes.
class ChunkDigest {
public:
    ChunkDigest();

    void add(std::span<const std::byte> chunk);
    void add(std::string_view chunk);

    /// The digest as 64 lower-case hexadecimal digits. Nothing may be added any more.
    [[nodiscard]] std::string finish();

private:
    struct Free {
        void operator()(evp_md_ctx_st* context) const;
    };

    std::unique_ptr<evp_md_ctx_st, Free> context_;
};

} // namespace quillane::core
