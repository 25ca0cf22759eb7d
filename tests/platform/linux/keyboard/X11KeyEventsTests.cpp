// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11KeyEvents.hpp"

#include "platform/linux/keyboard/X11Session.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

namespace quillane {

namespace {

using testing::run;
using testing::waitUntil;
namespace flags = core::flags;
namespace key = testing::key;

class X11KeyEventsTest : public testing::X11Test {
protected:
    X11KeyEvents& open() {
        session_ = *X11Session::open();
        events_ = std::make_unique<X11KeyEvents>(
            *session_.connection, *session_.keyboard, [this](pid_t pid) { return pid == 2 ? style_ : ShortcutStyle{}; },
            [this] { return offersSelection_; });
        return *events_;
    }

    bool become(core::EventFlags expected) {
        const bool same = waitUntil([&] { return events_->currentFlags() == expected; });
        EXPECT_EQ(events_->currentFlags(), expected) << std::hex << events_->currentFlags();
        return same;
    }

    ShortcutStyle style_ = ShortcutStyle::controlShift; ///< of process 2; that of others is control
    bool offersSelection_ = false;
    testing::X11TestKeyboard user_;
    X11Session session_;
    std::unique_ptr<X11KeyEvents> events_;
};

struct ModifierCase {
    const char* name;
    std::uint8_t keycode;
    core::EventFlags expected;
};

void PrintTo(const ModifierCase& tested, std::ostream* out) {
    *out << tested.name;
}

class X11ModifierTest : public X11KeyEventsTest, public ::testing::WithParamInterface<ModifierCase> {};

TEST_P(X11ModifierTest, IsDownWhilePressed) {
    open();
    user_.press(GetParam().keycode);
    ASSERT_TRUE(become(GetParam().expected));
    user_.release(GetParam().keycode);
    EXPECT_TRUE(become(0));
}

INSTANTIATE_TEST_SUITE_P(
    Modifiers, X11ModifierTest,
    ::testing::Values(ModifierCase{"leftShift", key::leftShift, flags::shift | flags::leftShift},
                      ModifierCase{"rightShift", key::rightShift, flags::shift | flags::rightShift},
                      ModifierCase{"leftControl", key::leftControl, flags::control | flags::leftControl},
                      ModifierCase{"rightControl", key::rightControl, flags::control | flags::rightControl},
                      ModifierCase{"leftAlt", key::leftAlt, flags::option | flags::leftOption},
                      ModifierCase{"rightAlt", key::rightAlt, flags::option | flags::rightOption},
                      ModifierCase{"leftSuper", key::leftSuper, flags::command | flags::leftCommand},
                      ModifierCase{"rightSuper", key::rightSuper, flags::command | flags::rightCommand}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(X11KeyEventsTest, BothShiftsAreDistinguishedInAnyOrder) {
    open();
    user_.press(key::leftShift);
    user_.press(key::rightShift);
    ASSERT_TRUE(become(flags::shift | flags::leftShift | flags::rightShift));
    user_.release(key::leftShift);
    EXPECT_TRUE(become(flags::shift | flags::rightShift));
    user_.release(key::rightShift);
    EXPECT_TRUE(become(0));
}

TEST_F(X11KeyEventsTest, ModifiersHeldBeforeTheStartAreKnownFromTheStart) {
    user_.press(key::rightShift);
    user_.press(key::leftControl);
    EXPECT_EQ(open().currentFlags(), flags::shift | flags::rightShift | flags::control | flags::leftControl);
    user_.release(key::leftControl);
    user_.release(key::rightShift);
}

TEST_F(X11KeyEventsTest, CapsLockShowsWhileItIsOn) {
    open();
    user_.tap(key::capsLock);
    ASSERT_TRUE(become(flags::capsLock));
    user_.tap(key::capsLock);
    EXPECT_TRUE(become(0));
}

// Posting keys

class X11PostedKeysTest : public X11KeyEventsTest {
protected:
    void watch() {
        open();
        watched_ = session_.input->onKey([this](const X11RawEvent& event) {
            seen_.push_back(event.isPress ? int{event.detail} : -int{event.detail});
        });
    }

    /// Key codes as they were pressed, negative ones as they were released.
    bool see(const std::vector<int>& expected) {
        waitUntil([&] { return seen_.size() >= expected.size(); });
        EXPECT_EQ(seen_, expected);
        return seen_ == expected;
    }

    std::vector<int> seen_;
    core::Subscription watched_;
};

constexpr core::KeyCode keyV = 9;
constexpr int inPlaceOfV = 55;

TEST_F(X11PostedKeysTest, CommandIsPostedAsControl) {
    watch();
    ASSERT_TRUE(events_->postKey(1, keyV, flags::command));
    EXPECT_TRUE(see({key::leftControl, inPlaceOfV, -inPlaceOfV, -key::leftControl}));
    EXPECT_TRUE(user_.keysDown().empty());
}

TEST_F(X11PostedKeysTest, AShortcutIsPostedAsTheApplicationTakesIt) {
    watch();
    ASSERT_TRUE(events_->postKey(2, keyV, flags::command));
    EXPECT_TRUE(see({key::leftControl, key::leftShift, inPlaceOfV, -inPlaceOfV, -key::leftShift, -key::leftControl}));
}

TEST_F(X11PostedKeysTest, TheSelectedTextIsPastedOnlyWhenItIsThePasteboards) {
    watch();
    style_ = ShortcutStyle::shiftInsert;
    EXPECT_FALSE(events_->postKey(2, keyV, flags::command));
    offersSelection_ = true;
    ASSERT_TRUE(events_->postKey(2, keyV, flags::command));
    constexpr int insert = 118;
    EXPECT_TRUE(see({key::leftShift, insert, -insert, -key::leftShift}));
}

TEST_F(X11PostedKeysTest, EveryModifierIsPressedBeforeAndReleasedAfterTheKey) {
    watch();
    ASSERT_TRUE(events_->postKey(1, keyV, flags::command | flags::shift | flags::option));
    EXPECT_TRUE(see({key::leftControl, key::leftAlt, key::leftShift, inPlaceOfV, -inPlaceOfV, -key::leftShift,
                     -key::leftAlt, -key::leftControl}));
}

TEST_F(X11PostedKeysTest, NothingIsPostedWhileTheUserHoldsAModifier) {
    watch();
    user_.press(key::leftShift);
    ASSERT_TRUE(become(flags::shift | flags::leftShift));
    EXPECT_FALSE(events_->postKey(1, keyV, flags::command));
    user_.release(key::leftShift);
    ASSERT_TRUE(become(0));
    EXPECT_TRUE(events_->postKey(1, keyV, flags::command));
    EXPECT_TRUE(see({key::leftShift, -key::leftShift, key::leftControl, inPlaceOfV, -inPlaceOfV, -key::leftControl}));
}

TEST_F(X11PostedKeysTest, AnotherLatinLayoutHasTheLetterElsewhere) {
    ASSERT_EQ(run({"setxkbmap", "-layout", "us", "-variant", "dvorak"}), 0);
    watch();
    ASSERT_TRUE(events_->postKey(1, keyV, flags::command));
    constexpr int dvorakV = 60; // the key of "." on other keyboards
    EXPECT_TRUE(see({key::leftControl, dvorakV, -dvorakV, -key::leftControl}));
}

TEST_F(X11PostedKeysTest, ALayoutOfAnotherScriptHasItInItsPlace) {
    ASSERT_EQ(run({"setxkbmap", "il"}), 0);
    watch();
    ASSERT_TRUE(events_->postKey(1, keyV, flags::command));
    EXPECT_TRUE(see({key::leftControl, inPlaceOfV, -inPlaceOfV, -key::leftControl}));
}

// Modifiers

TEST_F(X11KeyEventsTest, LevelThreeShiftOnTheRightIsRightOption) {
    ASSERT_EQ(run({"setxkbmap", "us,de"}), 0);
    open();
    user_.press(key::rightAlt);
    EXPECT_TRUE(become(flags::option | flags::rightOption));
    user_.release(key::rightAlt);
}

TEST_F(X11KeyEventsTest, SidesAreKnownWhereAltShiftSwitchesTheGroup) {
    ASSERT_EQ(run({"setxkbmap", "-layout", "us,il", "-option", "grp:alt_shift_toggle"}), 0);
    open();
    user_.press(key::leftAlt);
    user_.press(key::leftShift);
    ASSERT_TRUE(become(flags::option | flags::leftOption | flags::shift | flags::leftShift));
    user_.release(key::leftAlt);
    EXPECT_TRUE(become(flags::shift | flags::leftShift));
    user_.release(key::leftShift);
    EXPECT_TRUE(become(0));
}

TEST_F(X11KeyEventsTest, SwappedKeysCountForWhatTheyDo) {
    open();
    ASSERT_EQ(run({"setxkbmap", "-layout", "us", "-option", "ctrl:swapcaps"}), 0);
    user_.press(key::capsLock);
    EXPECT_TRUE(become(flags::control | flags::leftControl));
    user_.release(key::capsLock);
}

TEST_F(X11KeyEventsTest, AKeyboardThatGoesAwayLetsGoOfItsKeys) {
    open();
    user_.press(key::leftShift);
    ASSERT_TRUE(become(flags::shift | flags::leftShift));
    ASSERT_EQ(run({"xinput", "disable", "Xvfb keyboard"}), 0);
    EXPECT_TRUE(become(0));
    ASSERT_EQ(run({"xinput", "enable", "Xvfb keyboard"}), 0);
    user_.press(key::leftShift);
    EXPECT_TRUE(become(flags::shift | flags::leftShift));
    user_.release(key::leftShift);
}

TEST_F(X11KeyEventsTest, AKeyboardGivenToAnotherPairAndBackStillCounts) {
    open();
    const auto settled = [&] { return session_.connection->settle(std::chrono::seconds(1)); };
    ASSERT_EQ(run({"xinput", "create-master", "second"}), 0);
    ASSERT_EQ(run({"xinput", "reattach", "Xvfb keyboard", "second keyboard"}), 0);
    ASSERT_TRUE(settled());
    user_.press(key::rightShift);
    EXPECT_TRUE(become(flags::shift | flags::rightShift));
    user_.release(key::rightShift);
    EXPECT_TRUE(become(0));
    ASSERT_EQ(run({"xinput", "remove-master", "second pointer"}), 0);
    ASSERT_EQ(run({"xinput", "reattach", "Xvfb keyboard", "Virtual core keyboard"}), 0);
    ASSERT_TRUE(settled());
    user_.press(key::leftShift);
    EXPECT_TRUE(become(flags::shift | flags::leftShift));
    user_.release(key::leftShift);
}

} // namespace

} // namespace quillane
