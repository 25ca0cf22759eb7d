// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/EventTapContract.hpp"
#include "contracts/FakeDriver.hpp"
#include "fakes/FakeDesktop.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

using namespace fakes;

class FakeEventTapDriver : public testing::FakeDriver {
public:
    FakeEventTapDriver() { desktop_.withInputSources({hebrew()}).withFrontApplication("com.apple.TextEdit"); }

    EventTap& tap() { return desktop_.tap; }

    void press(core::KeyCode key) { desktop_.press(key); }

    void release(core::KeyCode key) { desktop_.release(key); }

    void press(Modifier modifier) { desktop_.press(modifier); }

    void release(Modifier modifier) { desktop_.release(modifier); }

    void click() { desktop_.click(); }

    void scroll() { desktop_.scroll(); }

    [[nodiscard]] std::u16string text() const {
        std::u16string text;
        for (const auto& event : desktop_.delivered()) {
            if (event.type == EventType::keyDown) {
                text += event.replacementText ? std::u16string(1, *event.replacementText) : ownText(event.keyCode);
            }
        }
        return text;
    }

    [[nodiscard]] static std::u16string ownText(core::KeyCode key) { return {static_cast<char16_t>(u'\u05D0' + key)}; }
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, EventTapContract, FakeEventTapDriver);
} // namespace testing
} // namespace quillane
