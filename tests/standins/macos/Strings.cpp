// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Strings.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <deque>
#include <map>
#include <mutex>
#include <optional>

namespace quillane::standin {

namespace {

constexpr char32_t firstSurrogate = 0xD800;
constexpr char32_t lastSurrogate = 0xDFFF;

/// One character of strict UTF-8 from the front, which it takes away; none when there is none.
std::optional<char32_t> takeCharacter(std::string_view& bytes) {
    const auto lead = static_cast<unsigned char>(bytes.front());
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || bytes.size() < length) {
        return std::nullopt;
    }
    char32_t character = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(bytes[i]);
        if ((next & 0xC0U) != 0x80U) {
            return std::nullopt;
        }
        character = (character << 6U) | (next & 0x3FU);
    }
    constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    if (character < smallest.at(length) || character > 0x10FFFF ||
        (character >= firstSurrogate && character <= lastSurrogate)) {
        return std::nullopt;
    }
    bytes.remove_prefix(length);
    return character;
}

std::optional<std::u16string> decoded(std::string_view bytes, CFStringEncoding encoding) {
    std::u16string result;
    if (encoding == kCFStringEncodingISOLatin1) {
        std::ranges::transform(bytes, std::back_inserter(result),
                               [](char byte) { return static_cast<char16_t>(static_cast<unsigned char>(byte)); });
        return result;
    }
    while (!bytes.empty()) {
        const auto character = takeCharacter(bytes);
        if (!character) {
            return std::nullopt;
        }
        if (*character < 0x10000) {
            result.push_back(static_cast<char16_t>(*character));
        } else {
            result.push_back(static_cast<char16_t>(0xD800 + ((*character - 0x10000) >> 10U)));
            result.push_back(static_cast<char16_t>(0xDC00 + ((*character - 0x10000) & 0x3FFU)));
        }
    }
    return result;
}

bool isHigh(char16_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLow(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

/// The UTF-8 of the character at the front and its length in units; no bytes for half of a pair.
std::pair<std::string, std::size_t> encoded(std::u16string_view text) {
    const bool isPair = isHigh(text[0]) && text.size() > 1 && isLow(text[1]);
    if (!isPair && (isHigh(text[0]) || isLow(text[0]))) {
        return {{}, 1};
    }
    const char32_t character = isPair ? 0x10000 + ((text[0] - 0xD800U) << 10U) + (text[1] - 0xDC00U) : text[0];
    std::string bytes;
    const auto add = [&](char32_t byte) { bytes.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        add(character);
    } else if (character < 0x800) {
        add(0xC0U | (character >> 6U));
        add(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        add(0xE0U | (character >> 12U));
        add(0x80U | ((character >> 6U) & 0x3FU));
        add(0x80U | (character & 0x3FU));
    } else {
        add(0xF0U | (character >> 18U));
        add(0x80U | ((character >> 12U) & 0x3FU));
        add(0x80U | ((character >> 6U) & 0x3FU));
        add(0x80U | (character & 0x3FU));
    }
    return {bytes, isPair ? 2 : 1};
}

class Address final : public Object {
public:
    explicit Address(CFStringRef text) : text_(CFRef<CFStringRef>::retain(text)) {}

    [[nodiscard]] CFTypeID type() const override { return CFURLGetTypeID(); }

    [[nodiscard]] std::string describe() const override { return "an address"; }

    [[nodiscard]] CFStringRef text() const { return text_.get(); }

private:
    void dispose() override { text_ = {}; }

    CFRef<CFStringRef> text_;
};

/// Whether every byte may stand in an address (RFC 3986, 2).
bool isAddress(std::string_view text) {
    constexpr std::string_view punctuation = "-._~:/?#[]@!$&'()*+,;=";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto isHex = [&](std::size_t place) {
            return place < text.size() && std::isxdigit(static_cast<unsigned char>(text[place])) != 0;
        };
        const bool isEscape = text[i] == '%' && isHex(i + 1) && isHex(i + 2);
        const auto byte = static_cast<unsigned char>(text[i]);
        if (!isEscape && (byte >= 0x80 || (std::isalnum(byte) == 0 && punctuation.find(text[i]) == punctuation.npos))) {
            return false;
        }
    }
    return !text.empty();
}

} // namespace

std::string String::describe() const {
    std::string result = "the string \"";
    for (std::u16string_view rest = text_; !rest.empty();) {
        const auto [bytes, units] = encoded(rest);
        result += bytes.empty() ? "?" : bytes;
        rest.remove_prefix(units);
    }
    return result + '"';
}

bool String::equals(const Object& other) const {
    return static_cast<const String&>(other).text_ == text_;
}

CFRef<CFStringRef> string(std::string_view utf8) {
    return CFRef<CFStringRef>::adopt(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(utf8.data()),
                                                             static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8,
                                                             Boolean{0}));
}

std::string text(CFTypeRef string) {
    const auto quoted = as<String>(string).describe();
    const auto begin = quoted.find('"') + 1;
    return quoted.substr(begin, quoted.size() - begin - 1);
}

} // namespace quillane::standin

using namespace quillane;

extern "C" {

CFTypeID CFStringGetTypeID() {
    return 2;
}

CFTypeID CFURLGetTypeID() {
    return 3;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, Boolean /*isExternalRepresentation*/) {
    const std::string_view view(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
    auto text = standin::decoded(view, encoding);
    return text ? standin::reference<CFStringRef>(standin::make<standin::String>(std::move(*text))) : nullptr;
}

CFIndex CFStringGetLength(CFStringRef string) {
    return static_cast<CFIndex>(standin::as<standin::String>(string).text().size());
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean /*isExternalRepresentation*/, UInt8* buffer, CFIndex size, CFIndex* used) {
    const std::u16string_view text = standin::as<standin::String>(string).text();
    if (encoding != kCFStringEncodingUTF8 || range.location < 0 || range.length < 0 ||
        range.location + range.length > static_cast<CFIndex>(text.size())) {
        standin::refuse("CFStringGetBytes of another encoding or a range beyond the string");
    }
    auto rest = text.substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
    CFIndex converted = 0;
    CFIndex count = 0;
    while (!rest.empty()) {
        auto [bytes, units] = standin::encoded(rest);
        if (bytes.empty() && lossByte == 0) {
            break;
        }
        bytes = bytes.empty() ? std::string(1, static_cast<char>(lossByte)) : bytes;
        if (buffer != nullptr) {
            if (count + static_cast<CFIndex>(bytes.size()) > size) {
                break;
            }
            std::ranges::copy(bytes, buffer + count);
        }
        count += static_cast<CFIndex>(bytes.size());
        converted += static_cast<CFIndex>(units);
        rest.remove_prefix(units);
    }
    if (used != nullptr) {
        *used = count;
    }
    return converted;
}

CFURLRef CFURLCreateWithString(CFAllocatorRef /*allocator*/, CFStringRef text, CFURLRef /*base*/) {
    return standin::isAddress(standin::text(text)) ? standin::reference<CFURLRef>(standin::make<standin::Address>(text))
                                                   : nullptr;
}

CFStringRef CFURLGetString(CFURLRef address) {
    return standin::as<standin::Address>(address).text();
}

CFStringRef constantStringOfStandIn(const char* text) {
    static std::mutex mutex;
    static std::deque<standin::String> strings;
    static std::map<std::string, CFStringRef> known;
    const std::lock_guard lock(mutex);
    auto& found = known[text];
    if (found == nullptr) {
        found = standin::reference<CFStringRef>(
            strings.emplace_back(*standin::decoded(text, kCFStringEncodingUTF8), standin::Object::Owner::nobody));
    }
    return found;
}
}
