// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/power/LogindWake.hpp"

#include "platform/linux/dbus/BusTest.hpp"

namespace quillane {

namespace {

using testing::callBus;
using testing::waitUntil;

/// The session bus stands in for the system's, and this process for the login manager.
class LogindWakeTest : public testing::BusTest {
protected:
    LogindWakeTest() : BusTest({.windowManager = false, .tray = false, .accessibility = false}) {}

    void SetUp() override {
        BusTest::SetUp();
        setenv("DBUS_SYSTEM_BUS_ADDRESS", sessionBusAddress().c_str(), 1);
        manager_ = BusConnection::open(systemBusAddress());
        ASSERT_TRUE(manager_);
        ASSERT_TRUE(callBus(*manager_, "RequestName", "org.freedesktop.login1"));
    }

    static void prepareForSleep(BusConnection& from, bool start) {
        BusMessage signal(
            dbus_message_new_signal("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep"));
        const dbus_bool_t value{start};
        dbus_message_append_args(signal.get(), DBUS_TYPE_BOOLEAN, &value, DBUS_TYPE_INVALID);
        from.send(std::move(signal));
    }

    /// Wakes the machine repeatedly until that is noticed: the bus may not yet know the listener.
    bool wakeUntil(const std::function<bool()>& noticed) {
        for (int i = 0; i < 20 && !noticed(); ++i) {
            prepareForSleep(*manager_, false);
            waitUntil(noticed, std::chrono::milliseconds(250));
        }
        return noticed();
    }

    std::unique_ptr<BusConnection> manager_;
};

TEST_F(LogindWakeTest, GivesNoticeWhenTheMachineHasWokenAndNotWhenItGoesToSleep) {
    LogindWake wake;
    int woken = 0;
    const auto token = wake.onDidWake([&] { ++woken; });
    ASSERT_TRUE(wakeUntil([&] { return woken > 0; }));
    const int before = woken;
    prepareForSleep(*manager_, true);
    prepareForSleep(*manager_, false);
    EXPECT_TRUE(waitUntil([&] { return woken > before; }));
    EXPECT_EQ(woken, before + 1);
}

TEST_F(LogindWakeTest, HearsNobodyButTheLoginManager) {
    LogindWake wake;
    int woken = 0;
    const auto token = wake.onDidWake([&] { ++woken; });
    ASSERT_TRUE(wakeUntil([&] { return woken > 0; }));
    const int before = woken;
    const auto stranger = BusConnection::open(systemBusAddress());
    prepareForSleep(*stranger, false);
    ASSERT_TRUE(callBus(*stranger, "NameHasOwner", "org.freedesktop.login1"));
    prepareForSleep(*manager_, false);
    EXPECT_TRUE(waitUntil([&] { return woken > before; }));
    EXPECT_EQ(woken, before + 1);
}

TEST_F(LogindWakeTest, IsQuietWithoutASystemBus) {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere", 1);
    LogindWake wake;
    const auto token = wake.onDidWake([] { FAIL(); });
    EXPECT_TRUE(callBus(*manager_, "NameHasOwner", "org.freedesktop.login1"));
}

} // namespace

} // namespace quillane
