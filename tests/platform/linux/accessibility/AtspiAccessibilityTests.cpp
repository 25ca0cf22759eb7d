// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/AtspiTest.hpp"

#include <gmock/gmock.h>

#include <cstddef>

#include <malloc.h>

namespace quillane {

namespace {

using namespace std::chrono_literals;
using live::Key;
using testing::waitUntil;
using Clock = std::chrono::steady_clock;

const std::vector<std::string> mousepad{"mousepad", "--disable-server"};

TEST_F(AtspiTest, AGtkEditorTakesText) {
    accessibility();
    const auto editor = live::required(desktop().startApplication(mousepad));
    EXPECT_TRUE(waitForField(editor.pid(), {"AXTextArea", "", true, true}));
}

TEST_F(AtspiTest, AQtEditorTakesText) {
    accessibility();
    const auto editor = live::required(desktop().startApplication({"featherpad"}));
    EXPECT_TRUE(waitForField(editor.pid(), {"AXTextArea", "", true, true}));
}

TEST_F(AtspiTest, FindsAFocusOlderThanTheAgent) {
    const auto first = live::required(desktop().startApplication(mousepad));
    const auto second = live::required(desktop().startApplication({"featherpad"}));
    ASSERT_TRUE(live::waitUntil([&] { return desktop().accessibility().focusedEditor(second.pid()).has_value(); }));
    EXPECT_TRUE(waitForField(second.pid(), {"AXTextArea", "", true, true}));
    ASSERT_TRUE(desktop().bringToFront(first.pid()));
    EXPECT_TRUE(waitForField(first.pid(), {"AXTextArea", "", true, true}));
}

TEST_F(AtspiTest, FollowsTheFocusFromFieldToField) {
    const auto form = startForm();
    EXPECT_TRUE(waitForField(form.pid(), plainField));
    desktop().keyboard().tap(Key::tab);
    EXPECT_TRUE(waitForField(form.pid(), {"AXTextField", "AXSecureTextField", true, true}));
    desktop().keyboard().tap(Key::tab);
    EXPECT_TRUE(waitForField(form.pid(), {"AXTextField", "", true, false}));
}

TEST_F(AtspiTest, DistinguishesTheFieldsByTheirTitles) {
    const auto form = startForm("password");
    std::optional<AXElement> field;
    EXPECT_TRUE(waitUntil([&] {
        field = focused(form.pid());
        return field && read<std::string>(*field, "AXTitle") == "password";
    }));
    EXPECT_EQ(read<bool>(*field, "AXFocused"), true);
}

TEST_F(AtspiTest, ParentsLeadToTheWindowAndTheApplication) {
    const auto form = startForm();
    std::optional<AXElement> step;
    ASSERT_TRUE(waitUntil([&] { return (step = focused(form.pid())).has_value(); }));
    std::vector<std::string> roles;
    const auto application = accessibility().application(form.pid());
    while (step && *step != application && roles.size() < 32) {
        roles.push_back(read<std::string>(*step, "AXRole").value_or("none"));
        step = read<AXElement>(*step, "AXParent");
    }
    EXPECT_EQ(step, application);
    EXPECT_EQ(roles.back(), "AXWindow");
    EXPECT_EQ(read<std::string>(application, "AXRole"), "AXApplication");
}

TEST_F(AtspiTest, AWindowThatIsNotInFrontHasNoFocus) {
    const auto form = startForm();
    ASSERT_TRUE(waitUntil([&] { return focused(form.pid()).has_value(); }));
    const auto other = live::required(desktop().startApplication(mousepad));
    EXPECT_TRUE(waitUntil([&] { return focused(other.pid()) && !focused(form.pid()); }));
    ASSERT_TRUE(desktop().bringToFront(form.pid()));
    EXPECT_TRUE(waitForField(form.pid(), plainField));
}

TEST_F(AtspiTest, AnApplicationThatHangsCostsItsTimeoutAndIsUsedAgainWhenItAnswers) {
    auto form = startForm();
    auto quickest = Clock::duration::max();
    for (int round = 0; round < 3; ++round) {
        std::optional<AXElement> field;
        ASSERT_TRUE(waitUntil([&] {
            field = focused(form.pid());
            return field && read<std::string>(*field, "AXTitle") == "plain";
        }));
        form.signal(SIGSTOP);
        const auto begin = Clock::now();
        EXPECT_FALSE(accessibility().attribute(*field, "AXTitle"));
        const auto took = Clock::now() - begin;
        EXPECT_GE(took, keyTimeout);
        quickest = std::min(quickest, took);
        form.signal(SIGCONT);
    }
    EXPECT_LT(quickest, 30ms);
}

TEST_F(AtspiTest, FactsAboutTheFocusAreForgottenWhenTheApplicationHangs) {
    auto form = startForm();
    ASSERT_TRUE(waitForField(form.pid(), plainField));
    form.signal(SIGSTOP);
    EXPECT_EQ(focusedField(form.pid()), plainField) << "a short delay interrupts typing";
    EXPECT_TRUE(waitUntil([&] { return !focusedField(form.pid()); }, 2s));
    form.signal(SIGCONT);
    EXPECT_TRUE(waitForField(form.pid(), plainField));
}

TEST_F(AtspiTest, WhatWasKnownLongAgoHoldsWhileTheApplicationIsBusy) {
    auto form = startForm();
    ASSERT_TRUE(waitForField(form.pid(), plainField));
    const auto known = Clock::now();
    ASSERT_TRUE(waitUntil([&] { return Clock::now() - known > 1s; })); // longer than it is kept
    form.signal(SIGSTOP);
    EXPECT_EQ(focusedField(form.pid()), plainField);
    EXPECT_EQ(focusedField(form.pid()), plainField) << "the next letter";
    EXPECT_TRUE(waitUntil([&] { return !focusedField(form.pid()); }));
    const auto forgotten = Clock::now();
    EXPECT_TRUE(waitUntil([&] { return focusedField(form.pid()) || Clock::now() - forgotten > 2500ms; }));
    EXPECT_FALSE(focusedField(form.pid())) << "asked again it must not be taken for busy again";
    form.signal(SIGCONT);
    EXPECT_TRUE(waitForField(form.pid(), plainField));
}

TEST_F(AtspiTest, AFocusThatHasMovedIsKnownBeforeItIsAskedFor) {
    const Field password{"AXTextField", "AXSecureTextField", true, true};
    const auto before = startForm();
    ASSERT_TRUE(waitForField(before.pid(), plainField)); // an application that begins now finds a listener
    auto form = startForm();
    ASSERT_TRUE(waitForField(form.pid(), plainField));
    desktop().keyboard().tap(Key::tab);
    const auto report = desktop().home() / "report";
    ASSERT_TRUE(
        waitUntil([&] { return live::readFile(report).find(R"("focus","field":"password")") != std::string::npos; }));
    // The first answer comes after the notice of the focus, the second after the answers about that.
    for (int answers = 0; answers < 2; ++answers) {
        const auto application = accessibility().application(form.pid());
        ASSERT_TRUE(waitUntil([&] { return read<std::string>(application, "AXRole").has_value(); }));
    }
    form.signal(SIGSTOP);
    EXPECT_EQ(focusedField(form.pid()), password);
    form.signal(SIGCONT);
}

TEST_F(AtspiTest, ManyCallsToAnApplicationThatHangsDoNotAddUp) {
    auto form = startForm();
    ASSERT_TRUE(waitUntil([&] { return focused(form.pid()).has_value(); }));
    const auto field = focused(form.pid());
    form.signal(SIGSTOP);
    const auto begin = Clock::now();
    for (int i = 0; i < 100; ++i) {
        EXPECT_FALSE(accessibility().attribute(*field, "AXTitle"));
    }
    EXPECT_LT(Clock::now() - begin, 500ms);
    form.signal(SIGCONT);
}

TEST_F(AtspiTest, ACallRunsNoOtherHandlers) {
    auto form = startForm();
    ASSERT_TRUE(waitUntil([&] { return focused(form.pid()).has_value(); }));
    const auto field = focused(form.pid());
    form.signal(SIGSTOP);
    bool ran = false;
    QTimer::singleShot(0, [&] { ran = true; });
    EXPECT_FALSE(accessibility().attribute(*field, "AXTitle"));
    EXPECT_FALSE(ran);
    EXPECT_TRUE(waitUntil([&] { return ran; }));
    form.signal(SIGCONT);
}

TEST_F(AtspiTest, AnApplicationThatIsKilledIsGone) {
    auto form = startForm();
    ASSERT_TRUE(waitUntil([&] { return focused(form.pid()).has_value(); }));
    const auto field = focused(form.pid());
    form.signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return !focused(form.pid()) && !read<std::string>(*field, "AXTitle"); }));
    EXPECT_FALSE(accessibility().isAttributeSettable(*field, "AXNoValue"));
    const auto next = startForm();
    EXPECT_TRUE(waitForField(next.pid(), plainField));
}

TEST_F(AtspiTest, AThousandMovesOfTheFocusKeepNoMemory) {
    const auto form = startForm();
    ASSERT_TRUE(waitForField(form.pid(), plainField));
    const auto move = [&](int times) {
        for (int i = 0; i < times; ++i) {
            desktop().keyboard().tap(Key::tab);
            QCoreApplication::processEvents();
            (void)focusedField(form.pid());
        }
        (void)desktop().accessibility().application(form.pid()); // answers when it has read the keys
        (void)focusedField(form.pid());                          // its answer follows the events
    };
    // Allocations: resident memory would count code and free blocks that happen to be in use.
    const auto allocated = [] { return static_cast<std::ptrdiff_t>(mallinfo2().uordblks); };
    move(200);
    const auto before = allocated();
    move(1000);
    // Once all events have been read.
    EXPECT_TRUE(waitUntil([&] { return allocated() - before < 64 * 1024; })) << allocated() - before;
}

/// A desktop whose accessibility comes and goes.
class AtspiWithoutBusTest : public AtspiTest {
protected:
    AtspiWithoutBusTest() : AtspiTest({.tray = false, .accessibility = false}) {}

    live::ChildProcess startAccessibility() {
        auto launcher =
            live::required(desktop().startProcess({"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"}));
        const auto bus = BusConnection::open(sessionBusAddress());
        EXPECT_TRUE(waitUntil([&] { return testing::isOwned(*bus, "org.a11y.Bus"); }));
        for (const auto* property : {"IsEnabled", "ScreenReaderEnabled"}) {
            auto message = methodCall("org.a11y.Bus", "/org/a11y/bus", DBUS_INTERFACE_PROPERTIES, "Set");
            appendText(*message, "org.a11y.Status");
            appendText(*message, property);
            appendVariant(*message, true);
            bus->send(std::move(message));
        }
        EXPECT_TRUE(testing::isOwned(*bus, "org.a11y.Bus"));
        return launcher;
    }
};

TEST_F(AtspiWithoutBusTest, EverythingIsAbsentWithoutASessionBus) {
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
    const auto begin = Clock::now();
    EXPECT_FALSE(focused(getppid()));
    EXPECT_FALSE(accessibility().isAttributeSettable(accessibility().application(getppid()), "AXValue"));
    EXPECT_LT(Clock::now() - begin, 50ms);
}

TEST_F(AtspiWithoutBusTest, IsThereWhenTheBusComesAndAgainWhenItReturns) {
    EXPECT_FALSE(focused(getppid()));
    {
        auto launcher = startAccessibility();
        const auto form = startForm();
        EXPECT_TRUE(waitForField(form.pid(), plainField));
        launcher.end();
        EXPECT_TRUE(waitUntil([&] { return !focused(form.pid()); }));
    }
    const auto launcher = startAccessibility();
    const auto form = startForm();
    EXPECT_TRUE(waitForField(form.pid(), plainField));
}

/// An application that answers wrongly.
class AtspiBadApplicationTest : public AtspiTest, public ::testing::WithParamInterface<const char*> {
protected:
    /// Starts it once the accessibility bus has a known listener, beside an application that behaves.
    live::ChildProcess startBad(const std::string& mode) {
        good_.emplace(startForm());
        EXPECT_TRUE(waitForField(good_->pid(), plainField));
        auto process = live::required(desktop().startProcess({QUILLANE_ACCESSIBLE, mode}));
        EXPECT_TRUE(live::waitUntil(
            [&] { return live::readFile(desktop().logFolder() / "accessible_standin.out") == "told\n"; }));
        return process;
    }

    std::optional<live::ChildProcess> good_;
};

TEST_F(AtspiBadApplicationTest, AnswersAreTakenFromTheStandIn) {
    const auto process = startBad("well");
    EXPECT_TRUE(waitForField(process.pid(), plainField));
}

TEST_F(AtspiBadApplicationTest, AFieldThatSilentlyBecomesAPasswordFieldIsNoticed) {
    auto process = startBad("turns");
    ASSERT_TRUE(waitForField(process.pid(), plainField));
    process.signal(SIGUSR1);
    EXPECT_TRUE(waitForField(process.pid(), {"AXTextField", "AXSecureTextField", true, true}));
}

TEST_P(AtspiBadApplicationTest, IsNeverEligibleAndNeverHarmful) {
    const auto process = startBad(GetParam());
    const auto application = accessibility().application(process.pid());
    accessibility().setMessagingTimeout(application, keyTimeout);
    for (int i = 0; i < 20; ++i) {
        EXPECT_FALSE(focused(process.pid()));
        for (const auto* name : {"AXRole", "AXTitle", "AXParent", "AXEnabled"}) {
            (void)accessibility().attribute(application, name);
        }
        const auto children =
            read<std::vector<AXElement>>(application, "AXChildren").value_or(std::vector<AXElement>());
        for (const auto& child : children) {
            EXPECT_FALSE(read<AXElement>(child, "AXFocusedUIElement"));
        }
        EXPECT_TRUE(waitForField(good_->pid(), plainField));
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, AtspiBadApplicationTest, ::testing::Values("types", "errors", "silent", "endless"),
                         [](const auto& one) { return std::string(one.param); });

TEST_F(AtspiBadApplicationTest, InvalidReferencesAreLeftOut) {
    const auto process = startBad("names");
    ASSERT_TRUE(waitForField(process.pid(), plainField));
    const auto field = focused(process.pid());
    ASSERT_TRUE(field);
    EXPECT_FALSE(read<AXElement>(*field, "AXParent"));
    EXPECT_EQ(read<std::vector<AXElement>>(*field, "AXChildren"), std::vector<AXElement>());
}

} // namespace

} // namespace quillane
