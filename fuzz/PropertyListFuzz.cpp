// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Property lists, and the two files of a vault that are made of them. What is read can be written, and what was
// written says the same when it is read.
#include "Require.hpp"

#include "core/clipboard/EntryArchive.hpp"
#include "core/propertylist/PropertyList.hpp"

using namespace quillane::core;
using quillane::fuzz::require;

namespace {

constexpr std::size_t readLimit = 1U << 20U;
constexpr std::size_t writeLimit = 1U << 28U; // what is folded in the input is unfolded here

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = quillane::fuzz::bytesOf(data, size);
    if (const auto value = parsePropertyList(bytes, readLimit)) {
        // By their bytes: NaN does not equal itself.
        if (const auto written = serializePropertyList(*value, writeLimit)) {
            const auto again = parsePropertyList(*written, writeLimit);
            require(again.has_value());
            require(serializePropertyList(*again, writeLimit) == written);
        }
    }
    if (const auto ids = entryArchive::decodeIndex(bytes)) {
        const auto encoded = entryArchive::encodeIndex(*ids);
        require(encoded && entryArchive::decodeIndex(*encoded) == ids);
    }
    if (const auto entry = entryArchive::decode(bytes)) {
        if (const auto encoded = entryArchive::encode(*entry)) {
            require(entryArchive::decode(*encoded) == entry);
        }
    }
    return 0;
}
