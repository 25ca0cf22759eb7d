// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/AtspiPermissionService.hpp"

#include "platform/PermissionServiceContract.hpp"
#include "platform/linux/BusTest.hpp"
#include "platform/linux/SessionBus.hpp"

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
