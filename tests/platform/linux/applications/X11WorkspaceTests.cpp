// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/applications/X11Workspace.hpp"

#include "contracts/WorkspaceContract.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/linux/applications/InstalledApplications.hpp"
#include "platform/linux/x11/WindowProcess.hpp"
#include "platform/linux/x11/X11Connection.hpp"
#include "platform/linux/x11/X11Properties.hpp"
#include "platform/linux/x11/X11TestServer.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/Waiting.hpp"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

namespace quillane {

namespace {

using testing::TestProcess;
using testing::waitUntil;
using testing::WindowProcess;

class X11WorkspaceTest : public testing::X11Test {
protected:
    X11WorkspaceTest() : connection_(std::move(*X11Connection::open(server_.display()))) {
        ::setenv("XDG_DATA_HOME", files_.path().c_str(), 1);
    }

    ~X11WorkspaceTest() override { ::unsetenv("XDG_DATA_HOME"); }

    X11WorkspaceTest(const X11WorkspaceTest&) = delete;
    X11WorkspaceTest& operator=(const X11WorkspaceTest&) = delete;

    /// Installs an application.
    void install(const std::string& id, const std::string& lines) const {
        const auto folder = files_.path() / "applications";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / (id + ".desktop")) << "[Desktop Entry]\nType=Application\nName=N\n" << lines;
    }

    bool isInFrontAs(const std::string& identifier) {
        return waitUntil([&] {
            const auto front = workspace().frontmostApplication();
            return front && front->bundleID == identifier;
        });
    }

    void startWindowManager() { manager_ = testing::startWindowManager(*connection_); }

    X11Workspace& workspace() {
        if (!workspace_) {
            installed_ = std::make_shared<InstalledApplications>(queue_);
            workspace_ = std::make_unique<X11Workspace>(*connection_, installed_, false);
            activations_ = workspace_->onDidActivateApplication([this] {
                const auto front = workspace_->frontmostApplication();
                activated_.push_back(front ? front->pid : 0);
            });
        }
        return *workspace_;
    }

    bool comesToFront(const TestProcess& process) {
        return waitUntil([&] {
            const auto front = workspace().frontmostApplication();
            return front && front->pid == process.pid();
        });
    }

    /// Waits for the window manager without handling the workspace's events.
    [[nodiscard]] bool isActiveOnTheServer(const WindowProcess& process) {
        const auto peer = std::move(*X11Connection::open(server_.display()));
        const auto activeWindow = peer->internAtoms(std::array<std::string_view, 1>{"_NET_ACTIVE_WINDOW"}).front();
        return live::waitUntil([&] {
            const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
                peer->raw(), xcb_get_property(peer->raw(), 0, peer->root(), activeWindow, XCB_ATOM_WINDOW, 0, 1),
                nullptr));
            return firstItem(reply.get()) == process.window();
        });
    }

    /// The X server's present time: that of a change to a window (ICCCM 2.1).
    [[nodiscard]] xcb_timestamp_t serverTime() {
        const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> peer(
            xcb_connect(server_.display().c_str(), nullptr), xcb_disconnect);
        auto* c = peer.get();
        const auto window = xcb_generate_id(c);
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(c, 0, window, xcb_setup_roots_iterator(xcb_get_setup(c)).data->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
        xcb_change_property(c, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
        xcb_flush(c);
        const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(xcb_wait_for_event(c), std::free);
        return event ? reinterpret_cast<const xcb_property_notify_event_t&>(*event).time : XCB_CURRENT_TIME;
    }

    /// As a click on the task bar does.
    void activate(const WindowProcess& process) {
        const std::array<std::string_view, 1> names{"_NET_ACTIVE_WINDOW"};
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = process.window();
        message.type = connection_->internAtoms(names).front();
        message.data.data32[0] = 2;
        xcb_send_event(connection_->raw(), 0, connection_->root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&message));
        connection_->flush();
    }

    void focus(xcb_window_t window) {
        xcb_set_input_focus(connection_->raw(), XCB_INPUT_FOCUS_NONE, window, XCB_CURRENT_TIME);
        connection_->flush();
    }

    /// Waits for everything pending to arrive.
    void settle() {
        bool answered = false;
        for (int round = 0; round < 4; ++round) {
            answered = false;
            connection_->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_->raw()), connection_,
                                                            [&](const auto*) { answered = true; });
            connection_->flush();
            ASSERT_TRUE(waitUntil([&] { return answered; }));
        }
    }

    std::shared_ptr<X11Connection> connection_; // shared so that it can stand for the owner of answers
    live::TemporaryFolder files_;
    QtMainQueue queue_;
    std::unique_ptr<TestProcess> manager_;
    std::shared_ptr<InstalledApplications> installed_; // shared with the workspace
    std::unique_ptr<X11Workspace> workspace_;
    std::vector<pid_t> activated_;
    core::Subscription activations_;
};

TEST_F(X11WorkspaceTest, ReportsTheActiveApplicationByItsBundleIdentifier) {
    startWindowManager();
    const WindowProcess browser("Chromium");
    ASSERT_TRUE(comesToFront(browser));
    const RunningApplication expected{.pid = browser.pid(), .bundleID = "org.chromium.Chromium", .name = "Chromium"};
    EXPECT_EQ(workspace().frontmostApplication(), expected);
}

TEST_F(X11WorkspaceTest, AWindowBelongsToTheApplicationWhoseEntryIsCalledAsItIs) {
    install("org.example.editor", "Exec=editor\n");
    startWindowManager();
    const WindowProcess window("org.example.Editor");
    EXPECT_TRUE(isInFrontAs("Editor"));
}

TEST_F(X11WorkspaceTest, KnowsWhoIsInFrontAfterEventsThatItHasNotReadYet) {
    install("org.example.editor", "Exec=editor\n");
    startWindowManager();
    const WindowProcess first("First");
    ASSERT_TRUE(comesToFront(first));
    const WindowProcess editor("org.example.Editor");
    ASSERT_TRUE(isActiveOnTheServer(editor));
    std::optional<std::string> front;
    workspace().whenFrontIsKnown([&] {
        const auto application = workspace().frontmostApplication();
        front = application ? application->bundleID.value_or("") : "";
    });
    ASSERT_TRUE(waitUntil([&] { return front.has_value(); }));
    EXPECT_EQ(front, "Editor");
}

TEST_F(X11WorkspaceTest, KnowsWhoWasInFrontAtATimeBeforeASwitch) {
    startWindowManager();
    const WindowProcess first("First");
    ASSERT_TRUE(comesToFront(first));
    const auto whileFirst = serverTime();
    std::this_thread::sleep_for(std::chrono::milliseconds{5}); // into another millisecond of the server
    const WindowProcess second("Second");
    ASSERT_TRUE(comesToFront(second));
    const auto before = workspace().frontAt(whileFirst);
    ASSERT_TRUE(before && *before);
    EXPECT_EQ((*before)->pid, first.pid());
    const auto now = workspace().frontAt(serverTime());
    ASSERT_TRUE(now && *now);
    EXPECT_EQ((*now)->pid, second.pid());
}

TEST_F(X11WorkspaceTest, AnApplicationThatIsInstalledMeanwhileIsKnownByItsFirstWindow) {
    startWindowManager();
    bool read = false;
    workspace();
    installed_->read([&] { read = true; });
    ASSERT_TRUE(waitUntil([&] { return read; }));
    install("org.example.editor", "Exec=editor\n");
    const WindowProcess window("org.example.Editor");
    EXPECT_TRUE(isInFrontAs("Editor"));
}

TEST_F(X11WorkspaceTest, GivesNoticeOfEachSwitchWithTheNewApplicationAlreadyInFront) {
    startWindowManager();
    workspace();
    const WindowProcess first("First");
    ASSERT_TRUE(comesToFront(first));
    const WindowProcess second("Second");
    ASSERT_TRUE(comesToFront(second));
    activate(first);
    ASSERT_TRUE(comesToFront(first));
    EXPECT_THAT(activated_, ::testing::ElementsAre(first.pid(), second.pid(), first.pid()));
}

TEST_F(X11WorkspaceTest, FindsTheApplicationThatWasInFrontBefore) {
    startWindowManager();
    const WindowProcess earlier("Earlier");
    EXPECT_TRUE(comesToFront(earlier));
    EXPECT_THAT(activated_, ::testing::ElementsAre(earlier.pid()));
}

TEST_F(X11WorkspaceTest, NothingIsInFrontWhenTheLastWindowHasClosed) {
    startWindowManager();
    WindowProcess only("Only");
    ASSERT_TRUE(comesToFront(only));
    only.end(SIGTERM);
    EXPECT_TRUE(waitUntil([&] { return !workspace().frontmostApplication(); }));
    EXPECT_TRUE(workspace().runningApplications("Only").empty());
}

TEST_F(X11WorkspaceTest, ListsRunningApplicationsOfOneIdentifierInTheOrderOfOpening) {
    startWindowManager();
    const WindowProcess first("Chromium");
    const WindowProcess second("chromium-browser");
    const WindowProcess other("Other");
    EXPECT_TRUE(waitUntil([&] { return workspace().runningApplications("org.chromium.Chromium").size() == 2; }));
    const auto found = workspace().runningApplications("org.chromium.Chromium");
    EXPECT_EQ(found.front().pid, first.pid());
    EXPECT_EQ(found.back().pid, second.pid());
    EXPECT_TRUE(workspace().runningApplications("org.chromium.chromium").empty());
}

TEST_F(X11WorkspaceTest, FindsAProgramWithoutAWindowByTheNameOfItsFileAndEndsIt) {
    startWindowManager();
    const auto program = files_.path() / "com.example.agent";
    std::filesystem::copy_file(QUILLANE_WINDOW_STANDIN, program);
    EXPECT_TRUE(workspace().runningApplications("com.example.agent").empty());
    TestProcess agent({program.string(), "Agent", "--hidden"});
    ASSERT_FALSE(agent.readLine().empty());
    EXPECT_TRUE(waitUntil([&] { return workspace().runningApplications("com.example.agent").size() == 1; }));
    const auto found = workspace().runningApplications("com.example.agent");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().pid, agent.pid());
    EXPECT_EQ(found.front().bundleID, "com.example.agent");
    EXPECT_TRUE(workspace().runningApplications("").empty());
    EXPECT_TRUE(workspace().terminate(agent.pid()));
    EXPECT_TRUE(waitUntil([&] { return workspace().runningApplications("com.example.agent").empty(); }));
}

TEST_F(X11WorkspaceTest, LeavesThisProcessOutOfTheRunningApplications) {
    startWindowManager();
    workspace();
    auto* c = connection_->raw();
    const auto window = xcb_generate_id(c);
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, connection_->root(), 0, 0, 10, 10, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const std::string both("agent\0Quillane\0", 15);
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(both.size()), both.data());
    EXPECT_TRUE(waitUntil([&] {
        xcb_map_window(c, window); // a window manager that is still starting may overlook it once
        connection_->flush();
        const auto front = workspace().frontmostApplication();
        return front && front->pid == getpid() && front->bundleID == "com.quillane.app";
    }));
    EXPECT_TRUE(workspace().runningApplications("com.quillane.app").empty());
}

TEST_F(X11WorkspaceTest, KnowsTheProcessOfAWindowThatDoesNotDeclareIt) {
    startWindowManager();
    const WindowProcess silent("Silent", {"--no-pid"});
    EXPECT_TRUE(comesToFront(silent));
}

TEST_F(X11WorkspaceTest, TerminatesByClosingTheWindow) {
    startWindowManager();
    WindowProcess process("Closing");
    ASSERT_TRUE(comesToFront(process));
    EXPECT_TRUE(workspace().terminate(process.pid()));
    ASSERT_TRUE(waitUntil([&] { return process.status().has_value(); }));
    EXPECT_TRUE(WIFEXITED(*process.status())) << "it was not asked but killed";
}

TEST_F(X11WorkspaceTest, TerminatesByASignalWhenAWindowCannotBeClosed) {
    startWindowManager();
    WindowProcess process("Stubborn", {"--no-close"});
    ASSERT_TRUE(comesToFront(process));
    EXPECT_TRUE(workspace().terminate(process.pid()));
    ASSERT_TRUE(waitUntil([&] { return process.status().has_value(); }));
    EXPECT_TRUE(WIFSIGNALED(*process.status()) && WTERMSIG(*process.status()) == SIGTERM);
}

TEST_F(X11WorkspaceTest, TerminatesAProcessWithoutWindows) {
    TestProcess process({"sleep", "60"});
    EXPECT_TRUE(workspace().terminate(process.pid()));
    ASSERT_TRUE(waitUntil([&] { return process.status().has_value(); }));
    EXPECT_EQ(WTERMSIG(*process.status()), SIGTERM);
}

TEST_F(X11WorkspaceTest, RefusesToTerminateForbiddenProcesses) {
    TestProcess gone({"true"});
    gone.end(SIGKILL);
    for (const auto pid : {getpid(), pid_t{1}, pid_t{0}, pid_t{-1}, gone.pid()}) {
        EXPECT_FALSE(workspace().terminate(pid)) << pid;
    }
}

TEST_F(X11WorkspaceTest, FollowsTheInputFocusWithoutAWindowManager) {
    workspace();
    const WindowProcess first("First");
    const WindowProcess second("Second");
    focus(first.window());
    ASSERT_TRUE(comesToFront(first));
    focus(second.window());
    ASSERT_TRUE(comesToFront(second));
    focus(XCB_INPUT_FOCUS_POINTER_ROOT);
    EXPECT_TRUE(waitUntil([&] { return !workspace().frontmostApplication(); }));
    EXPECT_THAT(activated_, ::testing::ElementsAre(first.pid(), second.pid()));
}

TEST_F(X11WorkspaceTest, TakesTheClassOfTheWindowAroundTheFocusedOne) {
    workspace();
    const WindowProcess outer("Outer");
    auto* c = connection_->raw();
    const auto inner = xcb_generate_id(c);
    xcb_create_window(c, XCB_COPY_FROM_PARENT, inner, outer.window(), 0, 0, 10, 10, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(c, inner);
    focus(inner);
    EXPECT_TRUE(waitUntil([&] {
        const auto front = workspace().frontmostApplication();
        return front && front->bundleID == "Outer";
    }));
}

TEST_F(X11WorkspaceTest, ClosesAFocusedWindowWithoutAWindowManager) {
    WindowProcess process("Alone");
    focus(process.window());
    ASSERT_TRUE(comesToFront(process));
    EXPECT_TRUE(workspace().terminate(process.pid()));
    ASSERT_TRUE(waitUntil([&] { return process.status().has_value(); }));
    EXPECT_TRUE(WIFEXITED(*process.status()));
}

TEST_F(X11WorkspaceTest, FallsBackToTheFocusWhenTheWindowManagerEndsAndReturnsToTheNextOne) {
    startWindowManager();
    const WindowProcess first("First");
    ASSERT_TRUE(comesToFront(first));
    manager_->end(SIGKILL);
    const WindowProcess second("Second");
    focus(second.window());
    ASSERT_TRUE(comesToFront(second));
    startWindowManager();
    EXPECT_TRUE(waitUntil([&] {
        activate(first); // it may not have taken over the windows yet
        const auto front = workspace().frontmostApplication();
        return front && front->pid == first.pid();
    }));
    EXPECT_TRUE(waitUntil([&] { return workspace().runningApplications("Second").size() == 1; }));
}

TEST_F(X11WorkspaceTest, AKeyboardGrabIsNotASwitch) {
    workspace();
    const WindowProcess process("Grabbed");
    focus(process.window());
    ASSERT_TRUE(comesToFront(process));
    auto* c = connection_->raw();
    const XReply<xcb_grab_keyboard_reply_t> grabbed(xcb_grab_keyboard_reply(
        c, xcb_grab_keyboard(c, 0, connection_->root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    ASSERT_TRUE(grabbed && grabbed->status == XCB_GRAB_STATUS_SUCCESS);
    xcb_ungrab_keyboard(c, XCB_CURRENT_TIME);
    settle();
    EXPECT_EQ(activated_.size(), 1U);
    EXPECT_EQ(workspace().frontmostApplication()->pid, process.pid());
}

TEST_F(X11WorkspaceTest, FindsEverythingAgainAfterTheConnectionWasReplaced) {
    startWindowManager();
    const WindowProcess process("Lasting");
    ASSERT_TRUE(comesToFront(process));
    const auto other = std::move(*X11Connection::open(server_.display()));
    auto* c = connection_->raw();
    const auto window = xcb_generate_id(c);
    xcb_create_window(c, 0, window, connection_->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    settle();
    xcb_kill_client(other->raw(), window);
    other->flush();
    ASSERT_TRUE(waitUntil([&] { return !workspace().frontmostApplication(); }));
    EXPECT_TRUE(comesToFront(process));
    EXPECT_EQ(workspace().runningApplications("Lasting").size(), 1U);
}

/// The contract of Workspace on windows of a private server.
class X11WorkspaceDriver : public X11WorkspaceTest {
public:
    static constexpr std::string_view first = "First";
    static constexpr std::string_view second = "Second";

    X11WorkspaceDriver() { startWindowManager(); }

    void TestBody() override {}

    using X11WorkspaceTest::workspace;

    pid_t open(std::string_view bundleID) {
        processes_.push_back(std::make_unique<WindowProcess>(std::string(bundleID)));
        return processes_.back()->pid();
    }

    void activate(pid_t pid) {
        const auto found = std::ranges::find(processes_, pid, [](const auto& one) { return one->pid(); });
        X11WorkspaceTest::activate(**found);
    }

    bool waitUntil(const std::function<bool()>& condition) { return testing::waitUntil(condition); }

private:
    std::vector<std::unique_ptr<WindowProcess>> processes_;
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(X11, WorkspaceContract, X11WorkspaceDriver);

} // namespace testing

} // namespace quillane
