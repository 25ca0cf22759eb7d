// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/X11WindowList.hpp"

#include "contracts/WindowListContract.hpp"
#include "platform/linux/x11/WindowProcess.hpp"

namespace quillane {

namespace {

using testing::WindowProcess;

/// A server with a window manager, on which programs open windows.
class X11WindowListDriver {
public:
    WindowList& list() { return list_; }

    pid_t open(const core::ScreenRect& content, const std::string& windowClass = "Plain") {
        std::vector<std::string> options{"--content"};
        for (const double number : {content.x, content.y, content.width, content.height}) {
            options.push_back(std::to_string(static_cast<int>(number)));
        }
        windows_.push_back(std::make_unique<WindowProcess>(windowClass, options));
        return windows_.back()->pid();
    }

    void close(pid_t pid) {
        std::erase_if(windows_, [pid](const auto& window) { return window->pid() == pid; });
    }

    /// Takes the window off the screen and leaves it open.
    void minimise(pid_t pid) {
        const auto found = std::ranges::find(windows_, pid, [](const auto& one) { return one->pid(); });
        const std::array<std::string_view, 1> names{"WM_CHANGE_STATE"};
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = (*found)->window();
        message.type = connection_->internAtoms(names).front();
        message.data.data32[0] = 3; // IconicState, ICCCM 4.1.4
        xcb_send_event(connection_->raw(), 0, connection_->root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&message));
        connection_->flush();
    }

    bool waitUntil(const std::function<bool()>& condition) { return testing::waitUntil(condition); }

private:
    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QCoreApplication application_{argc_, argv_.data()};
    testing::X11TestServer server_;
    std::unique_ptr<X11Connection> connection_ = std::move(*X11Connection::open(server_.display()));
    std::unique_ptr<testing::TestProcess> manager_ = testing::startWindowManager(*connection_);
    X11WindowList list_{*connection_};
    std::vector<std::unique_ptr<WindowProcess>> windows_;
};

class X11WindowListTest : public testing::WindowListContract<X11WindowListDriver> {};

TEST_F(X11WindowListTest, AnEmptyScreenHasNoWindows) {
    EXPECT_TRUE(read().empty());
}

TEST_F(X11WindowListTest, AMinimisedWindowIsNotOnTheScreen) {
    const auto first = open({50, 50, 500, 400});
    const auto second = open({80, 80, 500, 400});
    ASSERT_TRUE(driver.waitUntil([&] { return owners().size() == 2; }));
    driver.minimise(second);
    EXPECT_TRUE(driver.waitUntil([&] { return owners() == std::vector{first}; }));
}

TEST_F(X11WindowListTest, NoHandlerIsCalledAfterItsEnd) {
    bool answered = false;
    {
        const auto connection = std::move(*X11Connection::open({}));
        X11WindowList(*connection).read([&](const auto&) { answered = true; });
        EXPECT_TRUE(connection->settle(std::chrono::seconds(5)));
    }
    EXPECT_FALSE(answered);
}

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(X11, WindowListContract, X11WindowListDriver);

} // namespace testing

} // namespace quillane
