// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Connection.hpp"

#include "core/support/Lifetime.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include "support/ProcessFacts.hpp"

#include <gmock/gmock.h>

#include <thread>

#include <poll.h>
#include <unistd.h>

namespace quillane {

namespace {

using testing::waitUntil;

class X11ConnectionTest : public testing::X11Test {
protected:
    std::unique_ptr<X11Connection> connect() {
        auto connection = X11Connection::open(server_.display());
        EXPECT_TRUE(connection.has_value()) << connection.error();
        return std::move(*connection);
    }

    /// Makes a window on the root, which notifies root listeners.
    static xcb_window_t makeWindow(X11Connection& connection) {
        const auto window = xcb_generate_id(connection.raw());
        xcb_create_window(connection.raw(), 0, window, connection.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        connection.flush();
        return window;
    }

    /// Ends the client of a window as a desktop's "kill window" command does.
    static void kill(X11Connection& by, xcb_window_t window) {
        xcb_kill_client(by.raw(), window);
        by.flush();
    }

    core::Lifetime lifetime_;
};

TEST_F(X11ConnectionTest, SaysWhichDisplayCannotBeOpened) {
    const auto connection = X11Connection::open(":4711");
    ASSERT_FALSE(connection.has_value());
    EXPECT_EQ(connection.error(), "cannot open display :4711");
}

TEST_F(X11ConnectionTest, FindsTheExtensions) {
    const auto connection = connect();
    EXPECT_NE(connection->extensions().xinputOpcode, 0);
    EXPECT_NE(connection->extensions().xkbFirstEvent, 0);
    EXPECT_NE(connection->extensions().syncFirstEvent, 0);
    EXPECT_TRUE(connection->extensions().hasXTest);
    EXPECT_TRUE(connection->extensions().hasXFixes);
}

TEST_F(X11ConnectionTest, AnswersARequestAfterTheEventsBeforeIt) {
    const auto connection = connect();
    std::vector<std::string> seen;
    connection->selectRootEvents(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    const auto subscription = connection->onEvent([&](const xcb_generic_event_t& event) {
        seen.push_back(event.response_type == XCB_CREATE_NOTIFY ? "created" : "other");
    });
    makeWindow(*connection);
    connection->await<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus(connection->raw()), lifetime_,
        [&](const xcb_get_input_focus_reply_t* reply) { seen.push_back(reply != nullptr ? "reply" : "none"); });
    connection->flush();
    EXPECT_TRUE(waitUntil([&] { return seen.size() == 2; }));
    EXPECT_THAT(seen, ::testing::ElementsAre("created", "reply"));
}

TEST_F(X11ConnectionTest, AnEventSentAfterAReplyIsDispatchedAfterIt) {
    const auto connection = connect();
    const auto other = connect();
    std::vector<std::string> seen;
    connection->selectRootEvents(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    const auto subscription = connection->onEvent([&](const xcb_generic_event_t&) { seen.push_back("event"); });
    connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->raw()), lifetime_,
                                                   [&](const auto*) { seen.push_back("reply"); });
    xcb_flush(connection->raw());
    pollfd answer{xcb_get_file_descriptor(connection->raw()), POLLIN, 0};
    ASSERT_EQ(poll(&answer, 1, 5000), 1);
    makeWindow(*other);
    std::free(xcb_get_input_focus_reply(other->raw(), xcb_get_input_focus(other->raw()), nullptr));
    EXPECT_TRUE(waitUntil([&] { return seen.size() == 2; }));
    EXPECT_THAT(seen, ::testing::ElementsAre("reply", "event"));
}

TEST_F(X11ConnectionTest, AnErrorAnswersARequestWithNothing) {
    const auto connection = connect();
    int answers = 0;
    connection->await<xcb_get_geometry_reply_t>(xcb_get_geometry(connection->raw(), 0x7fffffff), lifetime_,
                                                [&](const xcb_get_geometry_reply_t* reply) {
                                                    EXPECT_EQ(reply, nullptr);
                                                    ++answers;
                                                });
    connection->flush();
    EXPECT_TRUE(waitUntil([&] { return answers == 1; }));
}

TEST_F(X11ConnectionTest, DoesNotAnswerAnOwnerThatHasGone) {
    const auto connection = connect();
    bool first = false;
    bool second = false;
    auto shortLived = std::make_shared<int>();
    connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->raw()), shortLived,
                                                   [&](const auto*) { first = true; });
    connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->raw()), lifetime_,
                                                   [&](const auto*) { second = true; });
    connection->flush();
    shortLived.reset();
    EXPECT_TRUE(waitUntil([&] { return second; }));
    EXPECT_FALSE(first);
}

TEST_F(X11ConnectionTest, RequestsMadeInAHandlerAreSent) {
    const auto connection = connect();
    bool answered = false;
    connection->await<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus(connection->raw()), lifetime_, [&](const xcb_get_input_focus_reply_t*) {
            connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->raw()), lifetime_,
                                                           [&](const auto* reply) { answered = reply != nullptr; });
        });
    connection->flush();
    EXPECT_TRUE(waitUntil([&] { return answered; }));
}

TEST_F(X11ConnectionTest, AKilledConnectionIsReplacedAndListensToTheRootAgain) {
    const auto connection = connect();
    const auto other = connect();
    connection->selectRootEvents(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    int created = 0;
    int lost = 0;
    int opened = 0;
    const auto events = connection->onEvent(
        [&](const xcb_generic_event_t& event) { created += event.response_type == XCB_CREATE_NOTIFY ? 1 : 0; });
    const auto losses = connection->onLost([&] { ++lost; });
    const auto openings = connection->onOpened([&] { ++opened; });
    const auto window = makeWindow(*connection);
    ASSERT_TRUE(waitUntil([&] { return created == 1; }));

    kill(*other, window);
    ASSERT_TRUE(waitUntil([&] { return opened == 1; }));
    EXPECT_EQ(lost, 1);
    EXPECT_FALSE(connection->isLost());

    bool selected = false;
    connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->raw()), lifetime_,
                                                   [&](const auto* reply) { selected = reply != nullptr; });
    connection->flush();
    ASSERT_TRUE(waitUntil([&] { return selected; }));
    makeWindow(*other);
    EXPECT_TRUE(waitUntil([&] { return created == 2; }));
}

TEST_F(X11ConnectionTest, ALostConnectionAnswersWithNothing) {
    const auto connection = connect();
    server_.stop();
    int before = 0;
    connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->raw()), lifetime_,
                                                   [&](const auto* reply) { before += reply == nullptr ? 1 : 0; });
    connection->flush();
    ASSERT_TRUE(waitUntil([&] { return connection->isLost() && before == 1; }));
    int after = 0;
    connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->raw()), lifetime_,
                                                   [&](const auto* reply) { after += reply == nullptr ? 1 : 0; });
    EXPECT_EQ(after, 0);
    EXPECT_TRUE(waitUntil([&] { return after == 1; }));
}

TEST_F(X11ConnectionTest, EndsAtOnceWhileItWaitsForAServerThatIsHeld) {
    auto connection = connect();
    const auto other = connect();
    const auto window = makeWindow(*connection);
    bool made = false;
    connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->raw()), lifetime_,
                                                   [&](const auto*) { made = true; });
    connection->flush();
    ASSERT_TRUE(waitUntil([&] { return made; }));
    xcb_grab_server(other->raw());
    kill(*other, window);
    ASSERT_TRUE(waitUntil([&] { return connection->isLost(); }));
    const auto begin = std::chrono::steady_clock::now();
    connection.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(100));
    xcb_ungrab_server(other->raw());
    other->flush();
}

TEST_F(X11ConnectionTest, FloodOfEventsLeavesTheLoopItsTurnsAndItsMemory) {
    const auto connection = connect();
    connection->selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    std::uint64_t seen = 0;
    const auto events = connection->onEvent([&](const xcb_generic_event_t&) {
        ++seen;
        const auto begin = std::chrono::steady_clock::now(); // a little work, so that they arrive faster than they go
        while (std::chrono::steady_clock::now() < begin + std::chrono::microseconds(10)) {
        }
    });
    constexpr std::uint64_t count = 100'000;
    std::thread flood([root = connection->root()] {
        auto* other = xcb_connect(nullptr, nullptr);
        for (std::uint64_t i = 0; i < count; ++i) {
            xcb_change_property(other, XCB_PROP_MODE_REPLACE, root, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 1, "x");
        }
        std::free(xcb_get_input_focus_reply(other, xcb_get_input_focus(other), nullptr));
        xcb_disconnect(other);
    });
    ASSERT_TRUE(waitUntil([&] { return seen > 0; }));
    const auto before = live::residentMemoryOf(getpid());
    int turns = 0;
    QTimer ticks;
    ticks.callOnTimeout([&] { ++turns; });
    ticks.start(10);
    EXPECT_TRUE(waitUntil([&] { return seen >= count / 10; }));
    EXPECT_LT(live::residentMemoryOf(getpid()), before + 2 * 1024 * 1024); // all of them take 5
    EXPECT_TRUE(waitUntil([&] { return seen >= count; }));
    EXPECT_GT(turns, 10); // in a second of work
    flood.join();
}

TEST_F(X11ConnectionTest, TurnEndsOnceAfterTheEventsThatArrivedTogether) {
    const auto connection = connect();
    connection->selectRootEvents(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    std::string order;
    const auto events = connection->onEvent([&](const xcb_generic_event_t&) { order += 'e'; });
    const auto turns = connection->onTurnEnd([&] { order += order.empty() ? "" : "t"; });
    const auto other = connect();
    makeWindow(*other);
    makeWindow(*other);
    makeWindow(*other);
    std::free(xcb_get_input_focus_reply(other->raw(), xcb_get_input_focus(other->raw()), nullptr));
    ASSERT_TRUE(waitUntil([&] { return order.size() >= 4; }));
    EXPECT_EQ(order, "eeet");
    EXPECT_FALSE(connection->isDispatching());
}

TEST_F(X11ConnectionTest, EventsThatAnotherClientSendsAreDroppedUnlessTheyAreMeantToBeSent) {
    const auto connection = connect();
    const auto other = connect();
    std::vector<int> seen;
    const auto events =
        connection->onEvent([&](const xcb_generic_event_t& event) { seen.push_back(event.response_type & 0x7f); });
    const auto window = makeWindow(*connection);
    bool made = false;
    connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->raw()), lifetime_,
                                                   [&](const auto*) { made = true; });
    connection->flush();
    ASSERT_TRUE(waitUntil([&] { return made; }));
    for (const auto type : {XCB_KEY_PRESS, XCB_PROPERTY_NOTIFY, XCB_DESTROY_NOTIFY, XCB_SELECTION_NOTIFY,
                            XCB_SELECTION_REQUEST, XCB_CLIENT_MESSAGE}) {
        std::array<char, 32> event{static_cast<char>(type)};
        event[1] = type == XCB_CLIENT_MESSAGE ? 32 : 0; // its format
        xcb_send_event(other->raw(), 0, window, XCB_EVENT_MASK_NO_EVENT, event.data());
    }
    other->flush();
    ASSERT_TRUE(waitUntil([&] { return seen.size() >= 2; }));
    EXPECT_THAT(seen, ::testing::ElementsAre(XCB_SELECTION_NOTIFY, XCB_CLIENT_MESSAGE));
}

TEST_F(X11ConnectionTest, InternsAtoms) {
    const auto connection = connect();
    const std::array<std::string_view, 2> names{"_NET_ACTIVE_WINDOW", "WM_CLASS"};
    const auto atoms = connection->internAtoms(names);
    ASSERT_EQ(atoms.size(), 2U);
    EXPECT_NE(atoms[0], xcb_atom_t{XCB_ATOM_NONE});
    EXPECT_EQ(atoms[1], xcb_atom_t{XCB_ATOM_WM_CLASS});
}

} // namespace

} // namespace quillane
