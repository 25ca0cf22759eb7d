// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/EventTapContract.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/linux/keyboard/X11Driver.hpp"
#include "platform/linux/keyboard/X11EventTap.hpp"
#include "platform/linux/keyboard/X11KeyCodes.hpp"
#include "platform/linux/keyboard/X11TestClient.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace quillane {
namespace {

class X11EventTapDriver : public testing::X11Driver {
public:
    X11EventTapDriver() {
        user_.lockGroup(1);
        client_ = std::make_unique<testing::X11TestClient>();
        tap_ = std::make_unique<X11EventTap>(session_, *sources_, mainQueue_);
        settle();
    }

    EventTap& tap() { return *tap_; }

    void press(core::KeyCode key) {
        act([&] { user_.press(keycode(key)); });
    }

    void release(core::KeyCode key) {
        act([&] { user_.release(keycode(key)); });
    }

    void press(fakes::Modifier modifier) { press(fakes::keyOf(modifier).keyCode); }

    void release(fakes::Modifier modifier) { release(fakes::keyOf(modifier).keyCode); }

    void click() {
        act([&] { user_.click(1); });
    }

    void scroll() {
        constexpr std::uint8_t wheelUp = 4;
        act([&] { user_.click(wheelUp); });
    }

    [[nodiscard]] std::u16string text() const {
        const auto text = client_->text();
        return {text.begin(), text.end()}; // with Shift, the Hebrew layout types ASCII
    }

    [[nodiscard]] static std::u16string ownText(core::KeyCode key) {
        if (key != 1) {
            throw std::invalid_argument("only the key of the letter s");
        }
        return u"S";
    }

private:
    static std::uint8_t keycode(core::KeyCode key) { return x11KeyCodes::keycode(key).value(); }

    /// User input comes after this program's requests, and is processed before the next step.
    void act(const std::function<void()>& action) {
        settle();
        action();
        settle();
    }

    QtMainQueue mainQueue_;
    std::unique_ptr<testing::X11TestClient> client_;
    std::unique_ptr<X11EventTap> tap_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, EventTapContract, X11EventTapDriver);
} // namespace testing
} // namespace quillane
