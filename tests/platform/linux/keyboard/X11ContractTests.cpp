// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/EventTapContract.hpp"
#include "contracts/InputSourcesContract.hpp"
#include "contracts/KeyEventsContract.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/linux/keyboard/X11EventTap.hpp"
#include "platform/linux/keyboard/X11InputSources.hpp"
#include "platform/linux/keyboard/X11KeyCodes.hpp"
#include "platform/linux/keyboard/X11KeyEvents.hpp"
#include "platform/linux/keyboard/X11TestClient.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillane {
namespace {

/// An X server with three layouts, a user at its keyboard and this program's connection to it.
class X11Driver {
public:
    bool waitUntil(const std::function<bool()>& condition) { return testing::waitUntil(condition); }

protected:
    X11Driver() {
        EXPECT_EQ(testing::run({"setxkbmap", "us,il,ara"}), 0);
        session_ = *X11Session::open();
        sources_ = std::make_unique<X11InputSources>(*session_.connection, *session_.keyboard);
    }

    /// Takes in everything that has happened on the server so far.
    void settle() {
        bool answered = false;
        session_.connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(session_.connection->raw()), alive_,
                                                                [&](const auto*) { answered = true; });
        session_.connection->flush();
        EXPECT_TRUE(testing::waitUntil([&] { return answered; }));
    }

    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QCoreApplication application_{argc_, argv_.data()};
    testing::X11TestServer server_;
    testing::X11TestKeyboard user_;
    X11Session session_;
    std::unique_ptr<X11InputSources> sources_;
    std::shared_ptr<void> alive_ = std::make_shared<int>();
};

class X11EventTapDriver : public X11Driver {
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
    static std::uint8_t keycode(core::KeyCode key) { return X11KeyCodes::keycode(key).value(); }

    /// What the user does comes after what this program has asked for, and is taken in before the next thing.
    void act(const std::function<void()>& action) {
        settle();
        action();
        settle();
    }

    QtMainQueue mainQueue_;
    std::unique_ptr<testing::X11TestClient> client_;
    std::unique_ptr<X11EventTap> tap_;
};

class X11InputSourcesDriver : public X11Driver {
public:
    X11InputSourcesDriver() { settle(); }

    InputSources& sources() { return *sources_; }

    void switchFromOutside(const std::string& id) {
        settle();
        const auto enabled = sources_->enabled().value_or(std::vector<InputSource>());
        const auto found = std::ranges::find(enabled, id, &InputSource::id);
        ASSERT_NE(found, enabled.end()) << id;
        user_.lockGroup(static_cast<unsigned>(found - enabled.begin()));
    }
};

class X11KeyEventsDriver : public X11Driver {
public:
    X11KeyEventsDriver() {
        settle();
        watched_ = session_.input->onKey([this](const X11RawEvent& event) {
            if (event.isPress) {
                pressed_.push_back(X11KeyCodes::macKeyCode(event.detail));
            }
        });
    }

    KeyEvents& events() { return events_; }

    [[nodiscard]] static pid_t target() { return 1; } // whoever has the keyboard

    void holdShift() { user_.press(testing::key::leftShift); }

    void releaseShift() { user_.release(testing::key::leftShift); }

    [[nodiscard]] std::size_t pressesOf(core::KeyCode keyCode) const {
        return static_cast<std::size_t>(std::ranges::count(pressed_, keyCode));
    }

private:
    X11KeyEvents events_{*session_.connection, *session_.keyboard};
    std::vector<core::KeyCode> pressed_;
    core::Subscription watched_;
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(X11, KeyEventsContract, X11KeyEventsDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(X11, EventTapContract, X11EventTapDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(X11, InputSourcesContract, X11InputSourcesDriver);

} // namespace testing
} // namespace quillane
