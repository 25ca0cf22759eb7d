// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/LiveForm.hpp"

namespace quillane::live {
namespace {

/// Chords pressed in a window that the agent takes for a Chromium browser, and counted in the agent's status.
class LiveDirectionChordTest : public AgentTest {
protected:
    void SetUp() override {
        AgentTest::SetUp();
        startAgent();
        form_ = required(LiveForm::start(desktop(), "plain", "Chromium"));
        ASSERT_TRUE(agent().bringToFront(form_->pid())); // a chord does not outlast a switch
    }

    void TearDown() override {
        AgentTest::TearDown();
        form_.reset();
    }

    void expectDeliveries(const std::string& last, int count) {
        EXPECT_TRUE(agent().waitForStatus([&](const auto& status) {
            return status.at("lastDirection").at("direction") == last &&
                   status.at("lastDirection").at("count") == count;
        })) << agent().status();
    }

    /// After a switch to the browser, which the agent learns of from the server a moment later than the test.
    void expectNothingWasDelivered() {
        EXPECT_TRUE(holdsFor(std::chrono::milliseconds{400},
                             [&] { return agent().status().at("lastDirection").at("count") == 0; }));
    }

    /// What was done before delivered nothing: the next chord is the first.
    void expectOnlyTheNextChordDelivers() {
        desktop().keyboard().chord({Key::leftControl, Key::leftShift});
        expectDeliveries("LTR", 1);
    }

    std::optional<LiveForm> form_;
};

TEST_F(LiveDirectionChordTest, ControlWithRightShiftFiresOnceOnTheLastRelease) {
    const auto& keyboard = desktop().keyboard();
    keyboard.press(Key::leftControl);
    keyboard.press(Key::rightShift);
    keyboard.release(Key::rightShift);
    EXPECT_EQ(agent().status().at("lastDirection").at("count"), 0);
    keyboard.release(Key::leftControl);
    expectDeliveries("RTL", 1);
    keyboard.chord({Key::leftControl, Key::leftShift});
    expectDeliveries("LTR", 2);
}

TEST_F(LiveDirectionChordTest, EitherControlAndEitherOrderWork) {
    desktop().keyboard().chord({Key::rightShift, Key::rightControl});
    expectDeliveries("RTL", 1);
    desktop().keyboard().chord({Key::rightControl, Key::leftShift});
    expectDeliveries("LTR", 2);
}

TEST_F(LiveDirectionChordTest, RightAltWithRightShiftGivesRightToLeft) {
    desktop().keyboard().chord({Key::rightAlt, Key::leftShift});
    desktop().keyboard().chord({Key::rightAlt, Key::rightShift});
    expectDeliveries("RTL", 1);
}

TEST_F(LiveDirectionChordTest, ALetterInBetweenCancels) {
    desktop().keyboard().tapWith({Key::leftControl, Key::rightShift}, Key::k);
    expectOnlyTheNextChordDelivers();
}

TEST_F(LiveDirectionChordTest, AClickInBetweenCancels) {
    desktop().keyboard().press(Key::leftControl);
    desktop().keyboard().press(Key::rightShift);
    desktop().keyboard().click(1);
    desktop().keyboard().release(Key::rightShift);
    desktop().keyboard().release(Key::leftControl);
    expectOnlyTheNextChordDelivers();
}

TEST_F(LiveDirectionChordTest, AScrollInBetweenCancels) {
    desktop().keyboard().press(Key::leftControl);
    desktop().keyboard().press(Key::rightShift);
    desktop().keyboard().click(4);
    desktop().keyboard().release(Key::rightShift);
    desktop().keyboard().release(Key::leftControl);
    expectOnlyTheNextChordDelivers();
}

TEST_F(LiveDirectionChordTest, TheOtherShiftWithoutReleaseCancels) {
    desktop().keyboard().press(Key::leftControl);
    desktop().keyboard().tap(Key::leftShift);
    desktop().keyboard().tap(Key::rightShift);
    desktop().keyboard().release(Key::leftControl);
    expectOnlyTheNextChordDelivers();
}

TEST_F(LiveDirectionChordTest, AThirdModifierCancels) {
    desktop().keyboard().chord({Key::leftControl, Key::rightShift, Key::leftSuper});
    expectOnlyTheNextChordDelivers();
}

TEST_F(LiveDirectionChordTest, HeldAcrossAnApplicationSwitchNeverFires) {
    auto other = desktop().startApplication({"mousepad", "--disable-server"});
    ASSERT_TRUE(other) << other.error();
    desktop().keyboard().press(Key::leftControl);
    desktop().keyboard().press(Key::rightShift);
    ASSERT_TRUE(agent().bringToFront(form_->pid()));
    desktop().keyboard().release(Key::rightShift);
    desktop().keyboard().release(Key::leftControl);
    expectNothingWasDelivered();
    expectOnlyTheNextChordDelivers();
}

TEST_F(LiveDirectionChordTest, DoesNothingInAnApplicationWithoutDirections) {
    auto other = desktop().startApplication({"mousepad", "--disable-server"});
    ASSERT_TRUE(other) << other.error();
    desktop().keyboard().chord({Key::leftControl, Key::rightShift});
    ASSERT_TRUE(agent().bringToFront(form_->pid()));
    expectNothingWasDelivered();
    expectOnlyTheNextChordDelivers();
}

TEST_F(LiveDirectionChordTest, DoesNothingWhilePaused) {
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    desktop().keyboard().chord({Key::leftControl, Key::rightShift});
    ASSERT_TRUE(agent().command({"resume"}).succeeded());
    ASSERT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("monitorRunning") == true; }));
    expectOnlyTheNextChordDelivers();
}

TEST_F(LiveDirectionChordTest, HeldWhileTheMonitorStartsNeverFires) {
    ASSERT_TRUE(agent().command({"pause"}).succeeded());
    desktop().keyboard().press(Key::leftControl);
    desktop().keyboard().press(Key::rightShift);
    ASSERT_TRUE(agent().command({"resume"}).succeeded());
    ASSERT_TRUE(agent().waitForStatus([](const auto& status) { return status.at("monitorRunning") == true; }));
    desktop().keyboard().release(Key::rightShift);
    desktop().keyboard().release(Key::leftControl);
    expectOnlyTheNextChordDelivers();
}

} // namespace
} // namespace quillane::live
