// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/foundation/MacStrings.hpp"

#include <new>

namespace quillane {

std::string utf8(CFStringRef text) {
    if (!text) {
        return {};
    }
    const CFRange all = CFRangeMake(0, CFStringGetLength(text));
    const UInt8 lossByte = '?';
    CFIndex size = 0;
    CFStringGetBytes(text, all, kCFStringEncodingUTF8, lossByte, false, nullptr, 0, &size);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(text, all, kCFStringEncodingUTF8, lossByte, false, reinterpret_cast<UInt8*>(bytes.data()), size,
                     &size);
    return bytes;
}

CFRef<CFStringRef> cfString(std::string_view text) {
    const auto* bytes = reinterpret_cast<const UInt8*>(text.data());
    const auto size = static_cast<CFIndex>(text.size());
    for (const CFStringEncoding encoding : {kCFStringEncodingUTF8, kCFStringEncodingISOLatin1}) {
        if (auto string = CFRef<CFStringRef>::adopt(CFStringCreateWithBytes(nullptr, bytes, size, encoding, false))) {
            return string;
        }
    }
    throw std::bad_alloc(); // Latin-1 accepts every byte, so only memory can be missing
}

} // namespace quillane
