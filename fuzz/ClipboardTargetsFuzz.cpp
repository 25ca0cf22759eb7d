// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Clipboard contents of another program. The first byte chooses the target, the rest is the data for it. Conversions
// yield what they promise, and data that is written back is read as the same.
#include "Require.hpp"

#include "core/clipboard/ClipboardSnapshot.hpp"
#include "core/clipboard/PasteboardTypes.hpp"
#include "core/support/Utf8.hpp"
#include "platform/linux/clipboard/ClipboardTargets.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

using namespace quillane;
using quillane::fuzz::require;

namespace {

std::string_view textOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string typeOf(std::string_view target) {
    const auto types = clipboardTargets::typesOf(std::array{target});
    return types.empty() ? std::string() : *types.begin();
}

void checkUriList(std::span<const std::byte> bytes) {
    const auto list = clipboardTargets::parseUriList(bytes);
    require(list.fileUrls.size() <= core::clipboardSnapshot::maximumItems + 1);
    std::vector<core::PasteboardItem> items;
    for (const auto& url : list.fileUrls) {
        const auto data = std::as_bytes(std::span(url));
        items.push_back({{{std::string(core::pasteboardTypes::fileUrl), std::vector(data.begin(), data.end())}}, {}});
    }
    if (const auto served = clipboardTargets::dataFor("text/uri-list", items); served && !items.empty()) {
        require(clipboardTargets::parseUriList(**served).fileUrls == list.fileUrls);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const auto known = clipboardTargets::known();
    const auto target = known[data[0] % known.size()];
    const auto bytes = quillane::fuzz::bytesOf(data + 1, size - 1);
    checkUriList(bytes);
    const auto converted = clipboardTargets::toUniform(target, {bytes.begin(), bytes.end()});
    const auto type = typeOf(target);
    if (!converted || type.empty()) {
        return 0;
    }
    require(converted->size() <= 3 * bytes.size());
    if (type == core::pasteboardTypes::string || type == core::pasteboardTypes::url) {
        require(core::isValidUtf8(textOf(*converted)));
    }
    const std::array items{core::PasteboardItem{{{type, *converted}}, {}}};
    for (const auto offered : clipboardTargets::targetsFor(items)) {
        const auto served = clipboardTargets::dataFor(offered, items);
        if (served && offered == target && target != "text/uri-list") {
            static_cast<void>(clipboardTargets::toUniform(offered, **served));
        }
    }
    return 0;
}
