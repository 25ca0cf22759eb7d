// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/keyboard/MacLayoutReader.hpp"

#include <array>
#include <string>
#include <string_view>

namespace quillane {

namespace {

constexpr int modifierShift = 8; ///< UCKeyTranslate takes the modifiers of an EventRecord, shifted
constexpr UniCharCount maximumLength = 16;

constexpr bool isIn(UniChar unit, UniChar first, UniChar last) {
    return unit >= first && unit <= last;
}

/// The text; empty when the key types a control character or half a character.
std::u32string codePoints(std::u16string_view text) {
    std::u32string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const UniChar unit = text[at];
        const bool isPair = isIn(unit, 0xd800, 0xdbff) && at + 1 < text.size() && isIn(text[at + 1], 0xdc00, 0xdfff);
        if (isPair) {
            result += static_cast<char32_t>(0x10000 + ((unit - 0xd800) << 10) + (text[++at] - 0xdc00));
        } else if (unit < U' ' || unit == 0x7f || isIn(unit, 0xd800, 0xdfff)) {
            return {};
        } else {
            result.push_back(unit);
        }
    }
    return result;
}

/// A stroke after another key, whose state it takes and changes.
class Translation {
public:
    explicit Translation(const UCKeyboardLayout& layout) : layout_(layout) {}

    std::u32string type(const core::KeyStroke& stroke) {
        const auto modifiers =
            (stroke.shift ? shiftKey : 0) | (stroke.option ? optionKey : 0) | (stroke.capsLock ? alphaLock : 0);
        std::array<UniChar, maximumLength> text{};
        UniCharCount length = 0;
        const auto status =
            UCKeyTranslate(&layout_, stroke.keyCode, kUCKeyActionDown, static_cast<UInt32>(modifiers) >> modifierShift,
                           LMGetKbdType(), 0, &deadKey_, text.size(), &length, text.data());
        return status == noErr ? codePoints(std::u16string(text.begin(), text.begin() + length)) : std::u32string();
    }

    /// A dead key waits for the next one.
    [[nodiscard]] bool isWaiting() const { return deadKey_ != 0; }

private:
    const UCKeyboardLayout& layout_;
    UInt32 deadKey_ = 0;
};

core::KeyboardLayout::Output output(const UCKeyboardLayout& layout, const core::KeyStroke& stroke) {
    Translation translation(layout);
    auto text = translation.type(stroke);
    if (!translation.isWaiting()) {
        return {std::move(text), false};
    }
    return {translation.type({.keyCode = core::spaceKey}), true};
}

} // namespace

core::KeyboardLayout readMacLayout(const UCKeyboardLayout& layout) {
    return core::KeyboardLayout::read([&](const core::KeyStroke& stroke) { return output(layout, stroke); },
                                      [&](const core::KeyStroke& dead, const core::KeyStroke& next) {
                                          Translation translation(layout);
                                          translation.type(dead);
                                          auto text = translation.type(next);
                                          // Without a composition the accent comes out first, then the next key as
                                          // ever.
                                          const bool isComposed =
                                              !translation.isWaiting() &&
                                              text != output(layout, dead).text + output(layout, next).text;
                                          return isComposed ? std::move(text) : std::u32string();
                                      });
}

} // namespace quillane
