// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/dbus/BusConnection.hpp"

#include "core/support/Lifetime.hpp"
#include "platform/linux/dbus/BusTest.hpp"
#include "platform/linux/dbus/SessionBus.hpp"

#include <gmock/gmock.h>

namespace quillane {

namespace {

using namespace std::chrono_literals;
using testing::callBus;
using testing::waitUntil;
using Clock = BusConnection::Clock;

class BusConnectionTest : public testing::BusTest {
protected:
    BusConnectionTest() : BusTest({.windowManager = false, .tray = false, .accessibility = false}) {}

    void SetUp() override {
        BusTest::SetUp();
        bus_ = BusConnection::open(sessionBusAddress());
        ASSERT_TRUE(bus_);
    }

    static BusMessage listNames() {
        return methodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "ListNames");
    }

    /// The bus, found by the socket that it listens on.
    live::ChildProcess startOtherBus() {
        auto process = live::required(desktop().startProcess(
            {"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + otherAddress()}));
        EXPECT_TRUE(live::waitUntil([&] {
            other_ = BusConnection::open(otherAddress());
            return other_ != nullptr;
        }));
        return process;
    }

    [[nodiscard]] std::string otherAddress() { return "unix:path=" + (desktop().runtimeFolder() / "other").string(); }

    std::unique_ptr<BusConnection> bus_;
    std::unique_ptr<BusConnection> other_;
    core::Lifetime lifetime_;
};

TEST_F(BusConnectionTest, AnswersACall) {
    bool found = false;
    bus_->call(listNames(), lifetime_, [&](DBusMessage* reply) {
        ASSERT_NE(reply, nullptr);
        auto names = BusReader(*reply).container();
        while (const auto name = names->text()) {
            found = found || *name == DBUS_SERVICE_DBUS;
        }
    });
    EXPECT_FALSE(found) << "the handler ran inside the call";
    EXPECT_TRUE(waitUntil([&] { return found; }));
}

TEST_F(BusConnectionTest, AnswersAnErrorWithNothing) {
    bool answered = false;
    bus_->call(methodCall("com.example.Nobody", "/", "com.example.Nobody", "Do"), lifetime_, [&](DBusMessage* reply) {
        EXPECT_EQ(reply, nullptr);
        answered = true;
    });
    EXPECT_TRUE(waitUntil([&] { return answered; }));
}

TEST_F(BusConnectionTest, DoesNotAnswerAnOwnerThatHasGone) {
    bool first = false;
    bool second = false;
    auto shortLived = std::make_shared<int>();
    bus_->call(listNames(), shortLived, [&](DBusMessage*) { first = true; });
    bus_->call(listNames(), lifetime_, [&](DBusMessage*) { second = true; });
    shortLived.reset();
    EXPECT_TRUE(waitUntil([&] { return second; }));
    EXPECT_FALSE(first);
}

TEST_F(BusConnectionTest, WaitingRunsOnlyHandlersThatAreMarkedForIt) {
    bool plain = false;
    bool marked = false;
    bus_->call(listNames(), lifetime_, [&](DBusMessage*) { plain = true; });
    bus_->call(
        listNames(), lifetime_, [&](DBusMessage*) { marked = true; }, BusConnection::Delivery::alsoInWait);
    bool timerRan = false;
    QTimer::singleShot(0, [&] { timerRan = true; });
    bus_->wait([&] { return marked; }, Clock::now() + 5s);
    EXPECT_TRUE(marked);
    EXPECT_FALSE(plain);
    EXPECT_FALSE(timerRan);
    EXPECT_TRUE(waitUntil([&] { return plain; }));
}

TEST_F(BusConnectionTest, WaitingEndsAtTheDeadline) {
    const auto begin = Clock::now();
    bus_->wait([] { return false; }, begin + 30ms);
    EXPECT_GE(Clock::now() - begin, 30ms);
    EXPECT_LT(Clock::now() - begin, 1s);
}

TEST_F(BusConnectionTest, ALostBusAnswersEverythingWithNothing) {
    auto process = startOtherBus();
    ASSERT_TRUE(callBus(*other_, "NameHasOwner", DBUS_SERVICE_DBUS));
    bool noticed = false;
    const auto loss = other_->onLost([&] { noticed = true; });
    process.signal(SIGSTOP);
    int before = 0;
    other_->call(listNames(), lifetime_, [&](DBusMessage* reply) { before += reply == nullptr ? 1 : 0; });
    process.signal(SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return noticed; }));
    EXPECT_EQ(before, 1);
    EXPECT_TRUE(other_->isLost());
    int after = 0;
    other_->call(listNames(), lifetime_, [&](DBusMessage* reply) { after += reply == nullptr ? 1 : 0; });
    EXPECT_EQ(after, 0);
    EXPECT_TRUE(waitUntil([&] { return after == 1; }));
}

TEST_F(BusConnectionTest, OpeningDoesNotWaitForABusThatHangs) {
    auto process = startOtherBus();
    process.signal(SIGSTOP);
    const auto begin = Clock::now();
    const auto hanging = BusConnection::open(otherAddress());
    EXPECT_LT(Clock::now() - begin, 100ms);
    bool answered = false;
    hanging->call(listNames(), lifetime_, [&](DBusMessage*) { answered = true; });
    process.signal(SIGCONT);
    EXPECT_TRUE(waitUntil([&] { return answered; }));
}

TEST_F(BusConnectionTest, RefusesACallThatSomebodyMakesToIt) {
    std::string name;
    bus_->call(listNames(), lifetime_, [&](DBusMessage* reply) { name = dbus_message_get_destination(reply); });
    ASSERT_TRUE(waitUntil([&] { return !name.empty(); }));
    bool answered = false;
    bus_->call(methodCall(name, "/", "com.example.Nothing", "Do"), lifetime_, [&](DBusMessage* reply) {
        EXPECT_EQ(reply, nullptr);
        answered = true;
    });
    EXPECT_TRUE(waitUntil([&] { return answered; }));
}

TEST_F(BusConnectionTest, OpensNoAddressThatWouldStartAProgramOrAskTheNetwork) {
    for (const auto* address : {"", "autolaunch:", "unixexec:path=true", "tcp:host=localhost,port=1",
                                "unix:path=/nowhere", "nonsense", ";;"}) {
        EXPECT_EQ(BusConnection::open(address), nullptr) << address;
    }
}

TEST_F(BusConnectionTest, TheSessionBusIsTriedAgainAfterItHasCome) {
    setenv("DBUS_SESSION_BUS_ADDRESS", otherAddress().c_str(), 1);
    SessionBus session;
    EXPECT_EQ(session.connection(), nullptr);
    int opened = 0;
    const auto openings = session.onOpened([&](BusConnection&) { ++opened; });
    const auto process = startOtherBus();
    EXPECT_TRUE(waitUntil([&] { return session.connection() != nullptr; }));
    EXPECT_EQ(opened, 1);
}

TEST(SessionBusAddress, ComesFromTheEnvironmentOrTheRuntimeFolder) {
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/somewhere", 1);
    EXPECT_EQ(sessionBusAddress(), "unix:path=/somewhere");
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    setenv("XDG_RUNTIME_DIR", "/nowhere", 1);
    EXPECT_EQ(sessionBusAddress(), "");
    auto folder = live::required(live::TemporaryFolder::create("quillane-bus"));
    ASSERT_TRUE(live::writeFile(folder.path() / "bus", ""));
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    EXPECT_EQ(sessionBusAddress(), "unix:path=" + (folder.path() / "bus").string());
}

} // namespace

} // namespace quillane
