// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/AtspiPermissionService.hpp"

#include "contracts/PermissionServiceContract.hpp"
#include "platform/linux/dbus/BusTest.hpp"
#include "platform/linux/dbus/SessionBus.hpp"

#include <chrono>
#include <csignal>
#include <cstdint>
#include <thread>

#include <sys/types.h>

namespace quillane {

namespace {

using core::MacPermission;
using testing::isOwned;
using testing::waitUntil;

void setEnabled(BusConnection& bus, bool enabled) {
    auto message = methodCall("org.a11y.Bus", "/org/a11y/bus", DBUS_INTERFACE_PROPERTIES, "Set");
    appendText(*message, "org.a11y.Status");
    appendText(*message, "IsEnabled");
    appendVariant(*message, enabled);
    bus.send(std::move(message));
}

class AtspiPermissionServiceTest : public testing::BusTest {
protected:
    explicit AtspiPermissionServiceTest(bool accessibility = true)
        : BusTest({.windowManager = false, .tray = false, .accessibility = accessibility}) {}
};

class AtspiPermissionServiceWithoutLauncherTest : public AtspiPermissionServiceTest {
protected:
    AtspiPermissionServiceWithoutLauncherTest() : AtspiPermissionServiceTest(false) {}
};

TEST_F(AtspiPermissionServiceTest, IsGrantedFromTheFirstQuestionOnWhenAccessibilityIsOn) {
    SessionBus session;
    const AtspiPermissionService service(session);
    EXPECT_TRUE(service.isGranted(MacPermission::accessibility));
    EXPECT_TRUE(service.isGranted(MacPermission::inputMonitoring));
}

/// The process that answers for accessibility, stopped as if a busy machine gave it no time.
class StoppedLauncher {
public:
    explicit StoppedLauncher(BusConnection& bus) {
        testing::callBus(bus, "GetConnectionUnixProcessID", "org.a11y.Bus", [this](DBusMessage* reply) {
            std::uint32_t process = 0;
            if (dbus_message_get_args(reply, nullptr, DBUS_TYPE_UINT32, &process, DBUS_TYPE_INVALID) != 0) {
                pid_ = static_cast<pid_t>(process);
            }
        });
        EXPECT_GT(pid_, 1);
        if (pid_ > 1) {
            ::kill(pid_, SIGSTOP);
        }
    }

    ~StoppedLauncher() { goOn(); }

    StoppedLauncher(const StoppedLauncher&) = delete;
    StoppedLauncher& operator=(const StoppedLauncher&) = delete;

    void goOn() const {
        if (pid_ > 1) {
            ::kill(pid_, SIGCONT);
        }
    }

private:
    pid_t pid_ = -1;
};

TEST_F(AtspiPermissionServiceTest, AFirstAnswerThatIsLateIsWaitedFor) {
    SessionBus asking;
    const StoppedLauncher launcher(*asking.connection());
    SessionBus session;
    const AtspiPermissionService service(session);
    std::jthread later([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        launcher.goOn();
    });
    EXPECT_TRUE(service.isGranted(MacPermission::accessibility));
}

TEST_F(AtspiPermissionServiceTest, AFirstAnswerThatDoesNotComeIsWaitedForOnce) {
    SessionBus asking;
    const StoppedLauncher launcher(*asking.connection());
    SessionBus session;
    const AtspiPermissionService service(session);
    const auto timed = [&] {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_FALSE(service.isGranted(MacPermission::accessibility));
        return std::chrono::steady_clock::now() - begin;
    };
    EXPECT_LT(timed(), std::chrono::seconds(3));
    EXPECT_LT(timed(), std::chrono::milliseconds(500));
    launcher.goOn();
    EXPECT_TRUE(waitUntil([&] { return service.isGranted(MacPermission::accessibility); }));
}

TEST_F(AtspiPermissionServiceTest, FollowsChangesAndARequestSwitchesItOn) {
    SessionBus session;
    AtspiPermissionService service(session);
    ASSERT_TRUE(service.isGranted(MacPermission::accessibility));
    setEnabled(*session.connection(), false);
    EXPECT_TRUE(waitUntil([&] { return !service.isGranted(MacPermission::accessibility); }));
    service.request(MacPermission::accessibility);
    EXPECT_TRUE(waitUntil([&] { return service.isGranted(MacPermission::accessibility); }));
}

TEST_F(AtspiPermissionServiceTest, ARequestForInputMonitoringChangesNothing) {
    SessionBus session;
    AtspiPermissionService service(session);
    setEnabled(*session.connection(), false);
    ASSERT_TRUE(waitUntil([&] { return !service.isGranted(MacPermission::accessibility); }));
    service.request(MacPermission::inputMonitoring);
    ASSERT_TRUE(isOwned(*session.connection(), "org.a11y.Bus"));
    EXPECT_FALSE(service.isGranted(MacPermission::accessibility));
    EXPECT_TRUE(service.isGranted(MacPermission::inputMonitoring));
}

TEST_F(AtspiPermissionServiceWithoutLauncherTest, BeingAskedStartsNothingAndARequestDoes) {
    SessionBus session;
    AtspiPermissionService service(session);
    EXPECT_FALSE(service.isGranted(MacPermission::accessibility));
    EXPECT_FALSE(isOwned(*session.connection(), "org.a11y.Bus"));
    service.request(MacPermission::accessibility);
    EXPECT_TRUE(waitUntil([&] { return service.isGranted(MacPermission::accessibility); }));
}

TEST_F(AtspiPermissionServiceWithoutLauncherTest, NoSessionBusMeansNotGranted) {
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
    SessionBus session;
    AtspiPermissionService service(session);
    service.request(MacPermission::accessibility);
    EXPECT_FALSE(service.isGranted(MacPermission::accessibility));
    EXPECT_TRUE(service.isGranted(MacPermission::inputMonitoring));
}

/// A desktop of its own, whose user can switch accessibility on and off. Input Monitoring cannot be taken away.
class AtspiPermissionDriver : public AtspiPermissionServiceTest {
public:
    AtspiPermissionDriver() {
        SetUp();
        session_.emplace();
        service_.emplace(*session_);
    }

    ~AtspiPermissionDriver() override {
        service_.reset();
        session_.reset();
        TearDown();
    }

    void TestBody() override {}

    PermissionService& service() { return *service_; }

    bool set(MacPermission permission, bool granted) {
        if (permission == MacPermission::accessibility) {
            setEnabled(*session_->connection(), granted);
        }
        return permission == MacPermission::accessibility;
    }

    bool waitUntil(const std::function<bool()>& condition) { return testing::waitUntil(condition); }

private:
    std::optional<SessionBus> session_;
    std::optional<AtspiPermissionService> service_;
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Atspi, PermissionServiceContract, AtspiPermissionDriver);

} // namespace testing

} // namespace quillane
