// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Files of the vault as an attacker without the key may leave them: a box opens to what was sealed, and no other does.
#include "Require.hpp"

#include "core/clipboard/EntryArchive.hpp"
#include "core/support/SealedBox.hpp"

#include <algorithm>
#include <vector>

using namespace quillane::core;
using quillane::fuzz::require;

namespace {

/// The key that the seed boxes were sealed under.
const SecretBytes& knownKey() {
    static const SecretBytes key(std::vector(sealedBox::keySize, std::byte{7}));
    return key;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = quillane::fuzz::bytesOf(data, size);
    std::vector<std::byte> buffer(bytes.begin(), bytes.end());
    const auto opened = sealedBox::open(knownKey(), bytes);
    const auto inPlace = sealedBox::openInPlace(knownKey(), buffer);
    require(opened.has_value() == inPlace.has_value());
    if (opened) {
        require(std::ranges::equal(*opened, *inPlace));
        static_cast<void>(entryArchive::decode(*opened));
        static_cast<void>(entryArchive::decodeIndex(*opened));
    } else {
        require((opened.error() == SealedBoxError::tooShort) == (size < sealedBox::nonceSize + sealedBox::tagSize));
    }
    auto box = sealedBox::seal(knownKey(), bytes);
    require(box && box->size() == size + sealedBox::nonceSize + sealedBox::tagSize);
    const auto plain = sealedBox::open(knownKey(), *box);
    require(plain && std::ranges::equal(*plain, bytes));
    if (size > 0) {
        (*box)[(data[0] * std::size_t{257} + data[size - 1]) % box->size()] ^= std::byte{1};
        require(!sealedBox::open(knownKey(), *box));
    }
    return 0;
}
