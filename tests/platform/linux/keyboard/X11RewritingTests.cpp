// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/ShiftEnglish.hpp"
#include "core/support/Lifetime.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/linux/keyboard/X11EventTap.hpp"
#include "platform/linux/keyboard/X11InputSources.hpp"
#include "platform/linux/keyboard/X11TestClient.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace quillane {

namespace {

using ::testing::IsEmpty;
using testing::run;
using testing::waitUntil;
using Device = testing::X11TestKeyboard::Device;
namespace key = testing::key;
using namespace std::chrono_literals;

constexpr std::uint64_t everything = 0x2401C0A;

std::uint8_t keycodeOf(char letter) {
    if (letter == ' ') {
        return key::space;
    }
    for (const auto code : core::shiftEnglish::keyCodes()) {
        if (core::shiftEnglish::character(code, {true, false, true, true}) == static_cast<char16_t>(letter)) {
            return *x11KeyCodes::keycode(code);
        }
    }
    throw std::invalid_argument("no such key");
}

/// One application with a user who writes Hebrew, and an agent that turns every letter with Shift into English.
class X11RewritingTest : public testing::X11Test {
protected:
    X11RewritingTest() {
        EXPECT_EQ(run({"setxkbmap", "us,il"}), 0);
        user_.lockGroup(1);
        freeKeycodes_ = freeKeycodes();
        client_ = std::make_unique<testing::X11TestClient>();
        session_ = *X11Session::open();
        sources_ = std::make_unique<X11InputSources>(*session_.connection, *session_.keyboard);
        tap_ = std::make_unique<X11EventTap>(session_, *sources_, mainQueue_);
        tap_->setReplaceableKeys(core::shiftEnglish::keyCodes());
        EXPECT_TRUE(tap_->start(everything, [this](InputEvent& event) { receive(event); }));
        settle();
    }

    void receive(InputEvent& event) {
        if (event.type != EventType::keyDown) {
            return;
        }
        ++presses_;
        std::this_thread::sleep_for(thinking_);
        const auto letter = core::shiftEnglish::character(
            event.keyCode, {.shift = (event.flags & core::flags::shift) != 0,
                            .shortcutModifier = (event.flags & (core::flags::control | core::flags::option |
                                                                core::flags::command)) != 0,
                            .rtlSource = true,
                            .editable = editable_});
        if (letter) {
            event.replacementText = *letter;
        }
    }

    /// Waits until the agent has handled the typed keys, and the server the agent's requests.
    void settle() {
        bool answered = false;
        for (int turn = 0; turn < 2; ++turn) {
            answered = false;
            session_.connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(session_.connection->raw()),
                                                                    lifetime_, [&](const auto*) { answered = true; });
            session_.connection->flush();
            EXPECT_TRUE(waitUntil([&] { return answered; }));
        }
    }

    void typeShifted(std::uint8_t keycode) {
        user_.press(key::leftShift);
        user_.tap(keycode);
        user_.release(key::leftShift);
    }

    bool clientHas(const std::string& text, std::chrono::milliseconds deadline = 5s) {
        const bool same = waitUntil([&] { return client_->text() == text; }, deadline);
        EXPECT_EQ(client_->text(), text);
        return same;
    }

    /// Types the letters of the text with Shift, other characters without, from another connection and regardless of
    /// the agent's progress.
    void typeFromAThread(std::string_view text, std::chrono::microseconds pause) {
        bool done = false;
        std::thread typist([&] {
            testing::X11TestKeyboard keyboard;
            keyboard.use(device_);
            auto next = std::chrono::steady_clock::now();
            for (const char character : text) {
                const bool shifted = character != ' ';
                if (shifted) {
                    keyboard.press(key::leftShift);
                }
                keyboard.tap(keycodeOf(character));
                if (shifted) {
                    keyboard.release(key::leftShift);
                }
                std::this_thread::sleep_until(next += pause);
            }
            QMetaObject::invokeMethod(&threadEnd_, [&] { done = true; });
        });
        waitUntil([&] { return done; }, 120s);
        typist.join();
    }

    static std::string randomWords(int count) {
        std::mt19937 random(20240611); // NOLINT: the same words each time
        std::uniform_int_distribution<int> letter('a', 'z');
        std::uniform_int_distribution<int> length(2, 5);
        std::string text;
        for (int i = 0; i < count; ++i) {
            for (int n = length(random); n > 0; --n) {
                text += static_cast<char>(letter(random));
            }
            text += ' ';
        }
        return text;
    }

    [[nodiscard]] std::vector<int> freeKeycodes() const {
        std::vector<int> free;
        auto* c = user_.raw();
        const auto* setup = xcb_get_setup(c);
        auto* reply = xcb_get_keyboard_mapping_reply(
            c,
            xcb_get_keyboard_mapping(c, setup->min_keycode,
                                     static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1)),
            nullptr);
        const auto* keysyms = xcb_get_keyboard_mapping_keysyms(reply);
        for (int i = 0; i <= setup->max_keycode - setup->min_keycode; ++i) {
            bool used = false;
            for (int n = 0; n < reply->keysyms_per_keycode; ++n) {
                used = used || keysyms[i * reply->keysyms_per_keycode + n] != 0;
            }
            if (!used) {
                free.push_back(i + setup->min_keycode);
            }
        }
        std::free(reply);
        return free;
    }

    QObject threadEnd_;
    core::Lifetime lifetime_;
    testing::X11TestKeyboard user_;
    Device device_ = Device::physical;
    std::vector<int> freeKeycodes_; ///< before the agent came
    std::unique_ptr<testing::X11TestClient> client_;
    X11Session session_;
    QtMainQueue mainQueue_;
    std::unique_ptr<X11InputSources> sources_;
    std::unique_ptr<X11EventTap> tap_;
    std::chrono::microseconds thinking_{0};
    bool editable_ = true;
    int presses_ = 0;
};

TEST_F(X11RewritingTest, ShiftWithALetterTypesTheSmallEnglishLetterOnce) {
    typeShifted(key::a);
    typeShifted(key::s);
    typeShifted(key::d);
    EXPECT_TRUE(clientHas("asd"));
    EXPECT_EQ(presses_, 3);
    EXPECT_THAT(user_.keysDown(), IsEmpty());
    EXPECT_THAT(client_->keysDown(), IsEmpty());
}

TEST_F(X11RewritingTest, KeysOfTheVirtualKeyboardAreRewrittenToo) {
    user_.use(Device::xtest);
    typeShifted(key::a);
    EXPECT_TRUE(clientHas("a"));
    EXPECT_THAT(user_.keysDown(), IsEmpty());
}

TEST_F(X11RewritingTest, LettersWithoutShiftStayHebrew) {
    user_.tap(key::a);
    EXPECT_TRUE(clientHas("ש"));
}

TEST_F(X11RewritingTest, KeysThatTheReceiverDeclinesTypeTheLayoutsText) {
    ASSERT_EQ(run({"setxkbmap", "us,ara"}), 0);
    user_.lockGroup(1);
    ASSERT_TRUE(waitUntil([&] { return sources_->current() && sources_->current()->id == "ara"; }));
    settle();
    editable_ = false;
    typeShifted(key::q);
    EXPECT_TRUE(clientHas("\u064E")); // fatha: of the second group, second level
}

TEST_F(X11RewritingTest, DigitsWithShiftAndLettersWithMoreModifiersAreLeftAlone) {
    typeShifted(key::digit1);
    user_.press(key::leftControl);
    typeShifted(key::a);
    user_.release(key::leftControl);
    EXPECT_TRUE(clientHas("!\x01"));
}

TEST_F(X11RewritingTest, InALeftToRightSourceNoKeyIsTaken) {
    user_.lockGroup(0);
    ASSERT_TRUE(waitUntil([&] { return sources_->current()->id == "us"; }));
    settle();
    typeShifted(key::a);
    EXPECT_TRUE(clientHas("A"));
}

TEST_F(X11RewritingTest, CapsLockMakesNoDifference) {
    user_.tap(key::capsLock);
    typeShifted(key::a);
    EXPECT_TRUE(clientHas("a"));
    user_.tap(key::capsLock);
}

TEST_F(X11RewritingTest, NumLockMakesNoDifference) {
    user_.tap(key::numLock);
    typeShifted(key::a);
    EXPECT_TRUE(clientHas("a"));
    user_.tap(key::numLock);
}

TEST_F(X11RewritingTest, AHeldKeyRepeatsItsLetter) {
    user_.press(key::leftShift);
    user_.press(key::a);
    EXPECT_TRUE(waitUntil([&] { return client_->text().size() >= 4; }));
    user_.release(key::a);
    user_.release(key::leftShift);
    EXPECT_THAT(client_->text(), ::testing::MatchesRegex("a+"));
}

TEST_F(X11RewritingTest, TheLetterComesBeforeWhatIsTypedWhileTheReceiverThinks) {
    thinking_ = 8ms;
    std::string expected;
    for (int i = 0; i < 20; ++i) {
        typeFromAThread("a b", 1ms);
        expected += "a b";
    }
    EXPECT_TRUE(clientHas(expected));
    EXPECT_THAT(user_.keysDown(), IsEmpty());
    EXPECT_THAT(client_->keysDown(), IsEmpty());
}

TEST_F(X11RewritingTest, HebrewTypedAtOnceAfterTheLetterStaysBehindIt) {
    thinking_ = 8ms;
    user_.press(key::leftShift);
    user_.press(key::a);
    user_.release(key::leftShift);
    user_.tap(key::s);
    user_.tap(key::d);
    user_.release(key::a);
    EXPECT_TRUE(clientHas("aדג"));
    EXPECT_THAT(user_.keysDown(), IsEmpty());
}

TEST_F(X11RewritingTest, AHundredWordsAtTwentyKeysASecondComeCompleteAndInOrder) {
    const auto words = randomWords(100);
    typeFromAThread(words, 50ms);
    EXPECT_TRUE(clientHas(words));
    EXPECT_EQ(presses_, static_cast<int>(words.size()));
    EXPECT_THAT(user_.keysDown(), IsEmpty());
    EXPECT_THAT(client_->keysDown(), IsEmpty());
}

TEST_F(X11RewritingTest, AHundredWordsAtAHundredKeysASecondWithASlowReceiverComeCompleteAndInOrder) {
    thinking_ = 3ms;
    const auto words = randomWords(100);
    typeFromAThread(words, 10ms);
    EXPECT_TRUE(clientHas(words));
    EXPECT_THAT(user_.keysDown(), IsEmpty());
}

TEST_F(X11RewritingTest, AFloodOfKeysComesCompleteAndInOrder) {
    thinking_ = 1ms;
    const auto words = randomWords(20);
    typeFromAThread(words, 0ms);
    EXPECT_TRUE(clientHas(words));
    EXPECT_EQ(presses_, static_cast<int>(words.size()));
    EXPECT_THAT(user_.keysDown(), IsEmpty());
}

TEST_F(X11RewritingTest, TheVirtualKeyboardsFloodComesCompleteAndInOrder) {
    device_ = Device::xtest;
    const auto words = randomWords(20);
    typeFromAThread(words, 0ms);
    EXPECT_TRUE(clientHas(words));
    EXPECT_THAT(user_.keysDown(), IsEmpty());
}

TEST_F(X11RewritingTest, WithoutAKeyCodeToSpareTheLayoutsLetterComes) {
    for (const auto keycode : freeKeycodes_) {
        const std::uint32_t keysyms[] = {0xffd1};
        xcb_change_keyboard_mapping(user_.raw(), 1, static_cast<std::uint8_t>(keycode), 1, keysyms);
    }
    user_.synchronize();
    settle();
    typeShifted(key::a);
    EXPECT_TRUE(clientHas("A"));
}

TEST_F(X11RewritingTest, TypingRereadsTheMapOnlyForNewLetters) {
    typeFromAThread("abcabc", 5ms);
    ASSERT_TRUE(clientHas("abcabc"));
    const auto readings = client_->mapReadings();
    typeFromAThread("cbacba", 5ms);
    ASSERT_TRUE(clientHas("abcabccbacba"));
    EXPECT_EQ(client_->mapReadings(), readings);
}

TEST_F(X11RewritingTest, WhileAnotherProgramHoldsTheKeyboardItGetsWhatTheLayoutSays) {
    std::free(xcb_grab_keyboard_reply(
        user_.raw(), xcb_grab_keyboard(user_.raw(), 0, user_.root(), 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    typeShifted(key::a);
    settle();
    xcb_ungrab_keyboard(user_.raw(), 0);
    typeShifted(key::s);
    EXPECT_TRUE(clientHas("s"));
}

TEST_F(X11RewritingTest, AnotherKeyboardMapIsTakenInTheStride) {
    typeShifted(key::a);
    ASSERT_TRUE(clientHas("a"));
    ASSERT_EQ(run({"setxkbmap", "us,ir"}), 0);
    user_.lockGroup(1);
    ASSERT_TRUE(waitUntil([&] { return sources_->current() && sources_->current()->id == "ir"; }));
    typeShifted(key::a);
    typeShifted(key::s);
    EXPECT_TRUE(clientHas("aas"));
}

TEST_F(X11RewritingTest, StoppingGivesEverythingBack) {
    typeFromAThread("thequickbrownfoxjumpsoverthelazydog", 5ms);
    ASSERT_TRUE(clientHas("thequickbrownfoxjumpsoverthelazydog"));
    EXPECT_LT(freeKeycodes().size(), freeKeycodes_.size());
    tap_->stop();
    settle();
    EXPECT_EQ(freeKeycodes(), freeKeycodes_);
    client_->clear();
    typeShifted(key::a);
    EXPECT_TRUE(clientHas("A"));
}

TEST_F(X11RewritingTest, DestructionGivesEverythingBack) {
    typeShifted(key::a);
    ASSERT_TRUE(clientHas("a"));
    tap_.reset();
    sources_.reset();
    session_ = {};
    EXPECT_TRUE(waitUntil([&] { return freeKeycodes() == freeKeycodes_; }));
}

/// Another agent has ended without restoring its key codes.
class X11LeftoversTest : public X11RewritingTest {
protected:
    X11LeftoversTest() {
        tap_.reset();
        sources_.reset();
        session_ = {};
    }

    void leave(std::vector<std::uint8_t> keycodes, std::uint32_t keysym) {
        auto* c = user_.raw();
        const auto* setup = xcb_get_setup(c);
        for (const auto keycode : keycodes) {
            const struct {
                xcb_xkb_key_sym_map_t map;
                std::uint32_t keysyms[2];
            } symbols{{{2, 2, 2, 2}, 1, 2, 2}, {keysym, keysym}};

            xcb_xkb_set_map(c, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_MAP_PART_KEY_SYMS, 0, setup->min_keycode,
                            setup->max_keycode, 0, 0, keycode, 1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                            &symbols);
        }
        list(keycodes);
    }

    void list(std::vector<std::uint8_t> keycodes) {
        constexpr std::string_view name = "_QUILLANE_SPARE_KEYS";
        auto* c = user_.raw();
        auto* atom = xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, name.size(), name.data()), nullptr);
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, user_.root(), atom->atom, XCB_ATOM_CARDINAL, 8,
                            static_cast<std::uint32_t>(keycodes.size()), keycodes.data());
        std::free(atom);
        user_.synchronize();
    }

    void startAgent() {
        session_ = *X11Session::open();
        sources_ = std::make_unique<X11InputSources>(*session_.connection, *session_.keyboard);
        tap_ = std::make_unique<X11EventTap>(session_, *sources_, mainQueue_);
        tap_->setReplaceableKeys(core::shiftEnglish::keyCodes());
        ASSERT_TRUE(tap_->start(everything, [this](InputEvent& event) { receive(event); }));
        settle();
    }
};

TEST_F(X11LeftoversTest, AreUsedAgainAndGivenBack) {
    leave({248, 230}, 'a');
    startAgent();
    user_.tap(key::s); // the first key on a device activates its map
    ASSERT_TRUE(clientHas("ד"));
    const auto readings = client_->mapReadings();
    typeShifted(key::a);
    EXPECT_TRUE(clientHas("דa"));
    EXPECT_EQ(client_->mapReadings(), readings);
    tap_->stop();
    settle();
    EXPECT_EQ(freeKeycodes(), freeKeycodes_);
}

TEST_F(X11LeftoversTest, AListThatNamesKeysInUseTakesNothingFromThem) {
    list({key::q, key::leftShift, 0, 255});
    startAgent();
    tap_->stop();
    settle();
    user_.tap(key::q);
    EXPECT_TRUE(clientHas("/"));
    EXPECT_EQ(freeKeycodes(), freeKeycodes_);
}

} // namespace

} // namespace quillane
