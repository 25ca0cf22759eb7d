// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/ApplicationSources.hpp"

#include "fakes/FakeDesktop.hpp"

#include <gtest/gtest.h>

#include <unistd.h>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using core::UserInput;
using fakes::arabic;
using fakes::english;
using fakes::hebrew;

constexpr auto mail = "org.example.mail";
constexpr auto editor = "org.example.editor";
constexpr core::KeyCode tab = 48;

class ApplicationSourcesTest : public ::testing::Test {
protected:
    ApplicationSourcesTest() {
        desktop.withInputSources({english(), hebrew(), arabic()});
        set({.enabled = true, .fixed = {}});
        activations = desktop.workspace.onDidActivateApplication([this] { sources.noteActivation(); });
        changes = desktop.inputSources.onChanged([this] { sources.noteChange(); });
    }

    void set(const core::ApplicationSourceOptions& options) { options.save(desktop.userDefaults); }

    void use(const InputSource& source) { ASSERT_TRUE(desktop.inputSources.select(source.id)); }

    void go(std::string_view application) { desktop.switchTo(application); }

    [[nodiscard]] std::string current() const { return desktop.inputSources.current()->id; }

    fakes::FakeDesktop desktop;
    bool isSuspended = false;
    ApplicationSources sources{desktop.platform, [this] { return isSuspended; }};
    core::Subscription activations;
    core::Subscription changes;
};

TEST_F(ApplicationSourcesTest, EachApplicationHasTheSourceThatWasLastUsedInIt) {
    go(mail);
    use(hebrew());
    go(editor);
    EXPECT_EQ(current(), hebrew().id) << "an application that is new has what is in use";
    use(english());
    go(mail);
    EXPECT_EQ(current(), hebrew().id);
    use(arabic());
    go(editor);
    EXPECT_EQ(current(), english().id);
    go(mail);
    EXPECT_EQ(current(), arabic().id);
}

TEST_F(ApplicationSourcesTest, WhatAnApplicationIsFirstSeenWithCountsToo) {
    go(mail);
    go(editor);
    use(hebrew());
    go(mail);
    EXPECT_EQ(current(), english().id);
}

TEST_F(ApplicationSourcesTest, SwitchedOffNothingIsSelected) {
    set({.enabled = false, .fixed = {{mail, hebrew().id}}});
    go(mail);
    use(hebrew());
    go(editor);
    use(english());
    go(mail);
    EXPECT_EQ(current(), english().id);
}

TEST_F(ApplicationSourcesTest, AFixedSourceComesBackWhateverWasUsedThere) {
    set({.enabled = true, .fixed = {{mail, arabic().id}}});
    go(mail);
    EXPECT_EQ(current(), arabic().id);
    use(hebrew());
    go(editor);
    go(mail);
    EXPECT_EQ(current(), arabic().id);
}

TEST_F(ApplicationSourcesTest, WhileAKeyIsDownItWaits) {
    go(mail);
    use(hebrew());
    go(editor);
    use(english());
    desktop.keyEvents.press(tab);
    go(mail);
    desktop.queue.advance(1s);
    EXPECT_EQ(current(), english().id);
    desktop.keyEvents.release(tab);
    desktop.keyEvents.setCurrentFlags(core::flags::command);
    desktop.queue.advance(1s);
    EXPECT_EQ(current(), english().id);
    desktop.keyEvents.setCurrentFlags(core::flags::capsLock);
    desktop.queue.advance(50ms);
    EXPECT_EQ(current(), hebrew().id);
}

TEST_F(ApplicationSourcesTest, AKeyThatIsHeldForLongEndsTheWait) {
    go(mail);
    use(hebrew());
    go(editor);
    use(english());
    desktop.keyEvents.press(tab);
    go(mail);
    desktop.queue.advance(10s);
    desktop.keyEvents.release(tab);
    desktop.queue.advance(10s);
    EXPECT_EQ(current(), english().id);
}

TEST_F(ApplicationSourcesTest, WhoTypesMeanwhileKeepsTheSource) {
    go(mail);
    use(hebrew());
    go(editor);
    use(english());
    desktop.keyEvents.press(tab);
    go(mail);
    sources.interrupt(UserInput::command);
    sources.interrupt(UserInput::typing);
    desktop.keyEvents.release(tab);
    desktop.queue.advance(1s);
    EXPECT_EQ(current(), english().id);
    go(editor);
    use(hebrew());
    go(mail);
    EXPECT_EQ(current(), english().id) << "which is what was last used there";
}

TEST_F(ApplicationSourcesTest, ASwitchOfTheUserWhileItWaitsStays) {
    go(mail);
    use(hebrew());
    go(editor);
    use(english());
    desktop.keyEvents.press(tab);
    go(mail);
    use(arabic());
    desktop.keyEvents.release(tab);
    desktop.queue.advance(1s);
    EXPECT_EQ(current(), arabic().id);
}

TEST_F(ApplicationSourcesTest, AnotherApplicationEndsTheWait) {
    go(mail);
    use(hebrew());
    go(editor);
    use(english());
    desktop.keyEvents.press(tab);
    go(mail);
    go(editor);
    desktop.keyEvents.release(tab);
    desktop.queue.advance(1s);
    EXPECT_EQ(current(), english().id);
}

TEST_F(ApplicationSourcesTest, WhileSuspendedNothingIsSelectedOrRemembered) {
    go(mail);
    use(hebrew());
    isSuspended = true;
    go(editor);
    use(english());
    go(mail);
    EXPECT_EQ(current(), english().id);
    isSuspended = false;
    go(editor);
    go(mail);
    EXPECT_EQ(current(), hebrew().id);
}

TEST_F(ApplicationSourcesTest, WithNothingInFrontNothingHappens) {
    go(mail);
    use(hebrew());
    desktop.workspace.activateNothing();
    use(english());
    go(mail);
    EXPECT_EQ(current(), hebrew().id);
}

TEST_F(ApplicationSourcesTest, ARefusalOrAnUnreadableListIsNoHarm) {
    go(mail);
    use(hebrew());
    go(editor);
    use(english());
    desktop.inputSources.setListReadable(false);
    go(mail);
    EXPECT_EQ(current(), english().id);
    go(editor);
    desktop.inputSources.setListReadable(true);
    desktop.inputSources.setRefusesSelection(true);
    go(mail);
    EXPECT_EQ(current(), english().id);
}

} // namespace
} // namespace quillane
