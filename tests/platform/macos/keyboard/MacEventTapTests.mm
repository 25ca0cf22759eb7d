// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/keyboard/MacEventTap.hpp"

#include "contracts/EventTapContract.hpp"
#include "platform/macos/MacTestUser.hpp"
#include "platform/macos/MacTestWindow.hpp"

#include <stdexcept>

namespace quillane {
namespace {

using fakes::Modifier;

/// The text of a key with Shift in a layout (Carbon, UnicodeUtilities.h).
std::u16string shiftedText(TISInputSourceRef source, core::KeyCode key) {
    const auto data =
        cfCast<CFDataRef>(TISGetInputSourceProperty(source, kTISPropertyUnicodeKeyLayoutData), CFDataGetTypeID());
    if (!data) {
        throw std::runtime_error("the input source has no layout");
    }
    UInt32 deadKeys = 0;
    UniCharCount count = 0;
    std::array<UniChar, 4> text{};
    UCKeyTranslate(reinterpret_cast<const UCKeyboardLayout*>(CFDataGetBytePtr(data)), key, kUCKeyActionDown,
                   shiftKey >> 8, LMGetKbdType(), kUCKeyTranslateNoDeadKeysMask, &deadKeys, text.size(), &count,
                   text.data());
    return {text.begin(), text.begin() + static_cast<std::ptrdiff_t>(count)};
}

class MacEventTapDriver : public testing::MacWindowDriver {
public:
    [[nodiscard]] std::string lacking() const {
        return hebrew_ ? testing::MacTestUser::lacking() : "the Hebrew input source is not enabled";
    }

    EventTap& tap() { return tap_; }

    void press(auto key) { user_.press(key); }

    void release(auto key) { user_.release(key); }

    void click() {
        const auto middle = window_.geometry().center();
        user_.click(CGPointMake(middle.x(), middle.y()));
    }

    void scroll() { user_.scroll(); }

    [[nodiscard]] std::u16string text() const { return field_.text().toStdU16String(); }

    [[nodiscard]] std::u16string ownText(core::KeyCode key) const { return shiftedText(hebrew_.get(), key); }

private:
    testing::MacInputSource hebrew_{CFSTR("he")};
    MacEventTap tap_;
    testing::MacTestUser user_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, EventTapContract, MacEventTapDriver);
} // namespace testing
} // namespace quillane
