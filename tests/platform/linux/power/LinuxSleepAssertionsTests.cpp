// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/power/LinuxSleepAssertions.hpp"

#include "contracts/SleepAssertionsContract.hpp"
#include "core/power/SleepPrevention.hpp"
#include "desktop/fixture/MockServices.hpp"
#include "platform/linux/dbus/BusTest.hpp"
#include "platform/linux/dbus/SessionBus.hpp"
#include "platform/linux/power/X11Blanking.hpp"

#include <xcb/screensaver.h>

namespace quillane {
namespace {

using Kind = core::SleepAssertionKind;
using testing::waitUntil;

constexpr auto sessionManager = "org.gnome.SessionManager";
constexpr auto screenSaver = "org.freedesktop.ScreenSaver";
constexpr live::LiveDesktopOptions bareDesktop{
    .layouts = "us", .xkbOptions = {}, .windowManager = false, .tray = false, .accessibility = false};

/// A desktop with a login manager and a session manager, on a bus of its own.
class LinuxSleepAssertionsDriver {
public:
    LinuxSleepAssertionsDriver()
        : application_(argc_, argv_.data()), desktop_(live::required(live::LiveDesktop::start(bareDesktop))) {
        desktop_->adoptEnvironment();
        setenv("DBUS_SYSTEM_BUS_ADDRESS", desktop_->environment().at("DBUS_SESSION_BUS_ADDRESS").c_str(), 1);
        login_.emplace(live::required(live::startLoginManager(*desktop_)));
        manager_.emplace(live::required(live::startInhibitionService(*desktop_, sessionManager)));
        session_.emplace();
        client_.emplace(*session_, nullptr);
    }

    core::SleepAssertionClient& client() { return *client_; }

    bool holds(const std::multiset<Kind>& kinds) {
        return waitUntil([&] {
            std::multiset<Kind> held;
            if (live::loginInhibitors(*desktop_).find("Quillane Keep Awake") != std::string::npos) {
                held.insert(Kind::system);
            }
            if (live::sessionInhibitors(*desktop_, sessionManager) == "com.quillane.app|Quillane Keep Awake|8") {
                held.insert(Kind::display);
            }
            return held == kinds;
        });
    }

private:
    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QCoreApplication application_;
    std::unique_ptr<live::LiveDesktop> desktop_;
    std::optional<live::ChildProcess> login_;
    std::optional<live::ChildProcess> manager_;
    std::optional<SessionBus> session_;
    std::optional<LinuxSleepAssertions> client_;
};

class LinuxSleepAssertionsTest : public testing::BusTest {
protected:
    LinuxSleepAssertionsTest() : BusTest(bareDesktop) {}

    void SetUp() override {
        BusTest::SetUp();
        setenv("DBUS_SYSTEM_BUS_ADDRESS", sessionBusAddress().c_str(), 1);
    }

    [[nodiscard]] static bool succeeds(const std::variant<core::SleepAssertionID, core::SleepAssertionError>& made) {
        return std::holds_alternative<core::SleepAssertionID>(made);
    }
};

TEST_F(LinuxSleepAssertionsTest, WithoutALoginManagerTheSystemFailsAtOnce) {
    SessionBus session;
    LinuxSleepAssertions client(session, nullptr);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(succeeds(client.create(Kind::system)));
    EXPECT_FALSE(succeeds(client.create(Kind::display)));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250));
}

TEST_F(LinuxSleepAssertionsTest, WithoutASystemBusTheSystemFails) {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere", 1);
    SessionBus session;
    LinuxSleepAssertions client(session, nullptr);
    EXPECT_FALSE(succeeds(client.create(Kind::system)));
}

TEST_F(LinuxSleepAssertionsTest, ALoginManagerThatHangsCostsLessThanHalfASecond) {
    const auto login = live::required(live::startLoginManager(desktop()));
    kill(login.pid(), SIGSTOP);
    SessionBus session;
    LinuxSleepAssertions client(session, nullptr);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(succeeds(client.create(Kind::system)));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    kill(login.pid(), SIGCONT);
    waitUntil([&] { return false; }, std::chrono::milliseconds(300)); // the late answer is given back
    EXPECT_TRUE(waitUntil([&] { return live::loginInhibitors(desktop()).find("Quillane") == std::string::npos; }));
}

TEST_F(LinuxSleepAssertionsTest, TheDisplayIsKeptByTheScreenSaverServiceWhereThereIsNoSessionManager) {
    const auto service = live::required(live::startInhibitionService(desktop(), screenSaver));
    SessionBus session;
    LinuxSleepAssertions client(session, nullptr);
    const auto display = client.create(Kind::display);
    ASSERT_TRUE(succeeds(display));
    EXPECT_EQ(live::sessionInhibitors(desktop(), screenSaver), "com.quillane.app|Quillane Keep Awake|");
    client.release(std::get<core::SleepAssertionID>(display));
    EXPECT_TRUE(waitUntil([&] { return live::sessionInhibitors(desktop(), screenSaver).empty(); }));
}

/// Keep Awake is on, kept by a login manager and a session manager.
class LostHolderTest : public LinuxSleepAssertionsTest {
protected:
    static constexpr LinuxSleepAssertions::Delays soon{std::chrono::milliseconds(50), std::chrono::milliseconds(200)};

    void SetUp() override {
        LinuxSleepAssertionsTest::SetUp();
        startLogin();
        startManager();
        session_.emplace();
        hold(soon);
    }

    void hold(LinuxSleepAssertions::Delays delays) {
        prevention_.reset();
        client_.emplace(*session_, nullptr, delays);
        prevention_.emplace(*client_);
        prevention_->setEnabled(true);
        ASSERT_TRUE(prevention_->isActive());
        losses_ = client_->onLost([this](core::SleepAssertionID, core::SleepAssertionError) { ++lost_; });
    }

    void TearDown() override {
        prevention_.reset();
        client_.reset();
        session_.reset();
        LinuxSleepAssertionsTest::TearDown();
    }

    void startLogin() { login_.emplace(live::required(live::startLoginManager(desktop()))); }

    void startManager() { manager_.emplace(live::required(live::startInhibitionService(desktop(), sessionManager))); }

    [[nodiscard]] bool isSystemHeld() {
        return waitUntil([&] { return live::loginInhibitors(desktop()).find("Quillane") != std::string::npos; });
    }

    [[nodiscard]] bool isDisplayHeld() {
        return waitUntil([&] { return !live::sessionInhibitors(desktop(), sessionManager).empty(); });
    }

    std::optional<live::ChildProcess> login_;
    std::optional<live::ChildProcess> manager_;
    std::optional<SessionBus> session_;
    std::optional<LinuxSleepAssertions> client_;
    std::optional<core::SleepPrevention> prevention_;
    core::Subscription losses_;
    int lost_ = 0;
};

TEST_F(LostHolderTest, RestartedSessionManagerIsAskedAgain) {
    manager_->end();
    startManager();
    EXPECT_TRUE(isDisplayHeld());
    EXPECT_TRUE(prevention_->isActive());
    EXPECT_EQ(lost_, 1);
    prevention_->setEnabled(false);
    EXPECT_TRUE(waitUntil([&] { return live::sessionInhibitors(desktop(), sessionManager).empty(); }));
}

TEST_F(LostHolderTest, ServiceThatIsBackIsNotWaitedForAnyLonger) {
    hold({std::chrono::milliseconds(50), std::chrono::hours(1)});
    manager_->end();
    startManager();
    EXPECT_TRUE(isDisplayHeld());
    EXPECT_TRUE(prevention_->isActive());
}

TEST_F(LostHolderTest, ReturnOfAServiceRestartsTheDelay) {
    hold({std::chrono::hours(1), std::chrono::milliseconds(300)});
    manager_->end();
    startManager(); // both changes of the owner are waiting to be read now
    EXPECT_FALSE(waitUntil([&] { return lost_ > 0; }, std::chrono::milliseconds(900)));
    EXPECT_TRUE(prevention_->isActive());
}

TEST_F(LostHolderTest, RestartedLoginManagerIsAskedAgain) {
    login_->end();
    startLogin();
    EXPECT_TRUE(isSystemHeld());
    EXPECT_TRUE(prevention_->isActive());
    EXPECT_EQ(lost_, 1);
}

TEST_F(LostHolderTest, AnotherServiceTakesThePlaceOfOneThatStaysAway) {
    const auto other = live::required(live::startInhibitionService(desktop(), screenSaver));
    manager_->end();
    EXPECT_TRUE(waitUntil([&] { return !live::sessionInhibitors(desktop(), screenSaver).empty(); }));
    EXPECT_TRUE(prevention_->isActive());
}

TEST_F(LostHolderTest, HolderThatStaysAwayMeansThatNothingIsHeld) {
    manager_->end();
    EXPECT_TRUE(waitUntil([&] { return !prevention_->isActive(); }));
    EXPECT_TRUE(prevention_->error());
    EXPECT_TRUE(waitUntil([&] { return live::loginInhibitors(desktop()).find("Quillane") == std::string::npos; }));
}

TEST_F(LostHolderTest, AnAssertionReleasedBeforeItsHolderIsBackIsNotTakenAgain) {
    manager_->end();
    ASSERT_TRUE(waitUntil([&] { return live::sessionInhibitors(desktop(), sessionManager).empty(); }));
    prevention_->setEnabled(false);
    startManager();
    EXPECT_FALSE(waitUntil([&] { return lost_ > 0; }, 3 * soon.withoutReturn));
    EXPECT_TRUE(live::sessionInhibitors(desktop(), sessionManager).empty());
}

/// Whether the server blanks the screen within two and a half seconds.
class Blanking {
public:
    explicit Blanking(X11Connection& connection) : connection_(connection) {}

    void blankAfterOneSecond() {
        xcb_set_screen_saver(connection_.raw(), 1, 0, XCB_BLANKING_NOT_PREFERRED, XCB_EXPOSURES_NOT_ALLOWED);
        xcb_force_screen_saver(connection_.raw(), XCB_SCREEN_SAVER_RESET);
        xcb_flush(connection_.raw());
    }

    [[nodiscard]] bool isBlank() const {
        const XReply<xcb_screensaver_query_info_reply_t> info(xcb_screensaver_query_info_reply(
            connection_.raw(), xcb_screensaver_query_info(connection_.raw(), connection_.root()), nullptr));
        return info && info->state == XCB_SCREENSAVER_STATE_ON;
    }

    [[nodiscard]] bool blanks() const {
        return waitUntil([&] { return isBlank(); }, std::chrono::milliseconds(2500));
    }

private:
    X11Connection& connection_;
};

TEST_F(LinuxSleepAssertionsTest, OnABareServerItsBlankingIsSuspendedUntilTheConnectionEnds) {
    auto watching = live::required(X11Connection::open({}));
    Blanking screen(*watching);
    SessionBus session;
    {
        auto connection = live::required(X11Connection::open({}));
        LinuxSleepAssertions client(session, std::make_unique<X11Blanking>(*connection));
        const auto display = client.create(Kind::display);
        ASSERT_TRUE(succeeds(display));
        screen.blankAfterOneSecond();
        EXPECT_FALSE(screen.blanks());
        client.release(std::get<core::SleepAssertionID>(display));
        EXPECT_TRUE(screen.blanks());
        ASSERT_TRUE(succeeds(client.create(Kind::display)));
        screen.blankAfterOneSecond();
        EXPECT_FALSE(screen.blanks());
    }
    EXPECT_TRUE(screen.blanks()); // as after a kill: nothing was released
}

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, SleepAssertionsContract, LinuxSleepAssertionsDriver);

} // namespace testing
} // namespace quillane
