// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Properties that other clients set on their windows, of any type, format and length, as the X server hands them on.
#include "Require.hpp"

#include "platform/linux/x11/X11Properties.hpp"

#include <array>
#include <cstring>
#include <vector>

using namespace quillane;
using quillane::fuzz::require;

namespace {

/// The reply as it comes from the server: the head, and after it the value, padded to four bytes.
std::vector<std::uint32_t> replyOf(const xcb_get_property_reply_t& head, const std::uint8_t* value, std::size_t size) {
    std::vector<std::uint32_t> words((sizeof head + size + 3) / 4);
    std::memcpy(words.data(), &head, sizeof head);
    if (size > 0) {
        std::memcpy(reinterpret_cast<std::uint8_t*>(words.data()) + sizeof head, value, size);
    }
    return words;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    constexpr std::array<std::uint8_t, 4> formats{0, 8, 16, 32};
    const auto format = formats[data[0] % formats.size()];
    const std::size_t unit = format == 0 ? 1 : format / 8U;
    const std::size_t count = format == 0 ? 0 : (size - 1) / unit;
    xcb_get_property_reply_t head{};
    head.format = format;
    head.type = data[0];
    head.value_len = static_cast<std::uint32_t>(count);
    head.length = static_cast<std::uint32_t>((count * unit + 3) / 4);
    const auto reply = replyOf(head, data + 1, count * unit);
    const auto* property = reinterpret_cast<const xcb_get_property_reply_t*>(reply.data());
    const auto all = items(property);
    require(all.size() == (format == 32 ? count : 0));
    std::uint32_t first = 0;
    if (!all.empty()) {
        std::memcpy(&first, data + 1, sizeof first);
    }
    require(firstItem(property) == first);
    return 0;
}
