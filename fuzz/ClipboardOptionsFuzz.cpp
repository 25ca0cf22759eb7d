// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Stored clipboard options: whatever is accepted stays as it is, and its derived values keep to their limits.
#include "Require.hpp"

#include "core/clipboard/ClipboardOptions.hpp"

using namespace quillane::core;
using quillane::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto options = decodeClipboardOptions(quillane::fuzz::bytesOf(data, size));
    if (!options) {
        return 0;
    }
    require(options->safeLimit() >= 10 && options->safeLimit() <= 1'000);
    require(options->byteLimit() >= 26'214'400 && options->byteLimit() <= 1'048'576'000);
    require(decodeClipboardOptions(encodeClipboardOptions(*options)) == options);
    return 0;
}
