// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/system/LinuxSystemInspector.hpp"

#include "contracts/SystemInspectorContract.hpp"
#include "platform/linux/dbus/BusTest.hpp"

#include <chrono>
#include <csignal>

namespace quillane {
namespace {

using core::BusService;
using core::WindowSystem;
using testing::isOwned;

/// Outside every desktop: facts that need no service.
class BareDriver {
public:
    SystemInspector& inspector() { return inspector_; }

private:
    std::array<char, 5> name_{"test"};
    std::array<char*, 2> words_{name_.data(), nullptr};
    int count_ = 1;
    QCoreApplication application_{count_, words_.data()};
    LinuxSystemInspector inspector_{LinuxDesktop{.x11Display = ":0"}};
};

TEST(LinuxSystemInspector, NamesTheWindowSystemThatTheEnvironmentSpeaksOf) {
    BareDriver application;
    const auto windowSystem = [](LinuxDesktop desktop) {
        return LinuxSystemInspector(std::move(desktop)).inspect().windowSystem;
    };
    EXPECT_EQ(windowSystem({.x11Display = ":0"}), WindowSystem::x11);
    EXPECT_EQ(windowSystem({.x11Display = ":0", .waylandSession = true}), WindowSystem::waylandWithX11);
    EXPECT_EQ(windowSystem({.waylandSession = true}), WindowSystem::wayland);
    EXPECT_EQ(windowSystem({}), WindowSystem::none);
}

class LinuxSystemInspectorTest : public testing::BusTest {
protected:
    explicit LinuxSystemInspectorTest(live::LiveDesktopOptions options = {.windowManager = false, .tray = false})
        : BusTest(std::move(options)) {}

    /// What answers is waited for long enough on a busy machine, too.
    static core::SystemFacts inspect(std::chrono::milliseconds timeout = std::chrono::seconds{20}) {
        return LinuxSystemInspector(LinuxDesktop::fromEnvironment(), timeout).inspect();
    }
};

class LinuxSystemInspectorWithoutServicesTest : public LinuxSystemInspectorTest {
protected:
    LinuxSystemInspectorWithoutServicesTest()
        : LinuxSystemInspectorTest(
              {.windowManager = false, .tray = false, .accessibility = false, .startsServices = false}) {}
};

TEST_F(LinuxSystemInspectorTest, FindsTheAccessibilityBusAndStartsNoKeyring) {
    const auto facts = inspect();
    EXPECT_EQ(facts.accessibilityBus, BusService::available);
    EXPECT_EQ(facts.secretService, BusService::notStarted);
    const auto bus = BusConnection::open(sessionBusAddress());
    ASSERT_TRUE(bus);
    EXPECT_FALSE(isOwned(*bus, "org.freedesktop.secrets"));
}

TEST_F(LinuxSystemInspectorWithoutServicesTest, ServicesThatNobodyOffersAreAbsent) {
    const auto facts = inspect();
    EXPECT_EQ(facts.accessibilityBus, BusService::absent);
    EXPECT_EQ(facts.secretService, BusService::absent);
}

TEST_F(LinuxSystemInspectorWithoutServicesTest, AServiceThatDoesNotAnswerIsSilentWithinTheTime) {
    const auto bus = BusConnection::open(sessionBusAddress()); // answers nothing while this thread inspects
    ASSERT_TRUE(bus);
    ASSERT_TRUE(testing::callBus(*bus, "RequestName", "org.a11y.Bus"));
    ASSERT_TRUE(testing::callBus(*bus, "RequestName", "org.freedesktop.secrets"));
    const auto before = std::chrono::steady_clock::now();
    const auto facts = inspect(std::chrono::seconds{1});
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds{3});
    EXPECT_EQ(facts.accessibilityBus, BusService::silent);
    EXPECT_EQ(facts.secretService, BusService::silent);
}

TEST_F(LinuxSystemInspectorTest, WithoutASessionBusNothingIsReached) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + (desktop().home() / "nobody").string()).c_str(), 1);
    const auto facts = inspect();
    EXPECT_EQ(facts.accessibilityBus, BusService::noBus);
    EXPECT_EQ(facts.secretService, BusService::noBus);
}

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, SystemInspectorContract, BareDriver);

} // namespace testing
} // namespace quillane
