// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/FileDescriptor.hpp"
#include "platform/common/control/ControlProtocol.hpp"
#include "platform/common/control/ControlSocket.hpp"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>

#include <stdlib.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace quillane {
namespace {

using namespace std::chrono_literals;

class ControlSocketTest : public testing::Test {
protected:
    ControlSocketTest() {
        std::string pattern = std::filesystem::temp_directory_path() / "quillane-control-XXXXXX";
        folder_ = ::mkdtemp(pattern.data());
    }

    ~ControlSocketTest() override { std::filesystem::remove_all(folder_); }

    [[nodiscard]] std::filesystem::path path() const { return folder_ / "quillane.sock"; }

    template <typename Work>
    auto whileRunningLoop(Work work) {
        std::optional<decltype(work())> result;
        std::atomic<bool> done = false;
        std::thread other([&] {
            result.emplace(work());
            done = true;
        });
        QElapsedTimer elapsed;
        elapsed.start();
        while (!done && elapsed.elapsed() < 10'000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        other.join();
        return *result;
    }

    /// Sends from another thread, as another process would, while this one's event loop answers.
    tl::expected<ControlReply, std::errc> ask(const ControlRequest& request, std::chrono::milliseconds timeout = 2s) {
        return whileRunningLoop([&] { return sendControlRequest(path(), request, timeout); });
    }

    /// Sends raw bytes and returns what arrived until the other side closed.
    std::string sendRaw(const std::string& bytes) {
        return whileRunningLoop([&] {
            const core::FileDescriptor fd(::socket(AF_UNIX, SOCK_STREAM, 0));
            sockaddr_un address{};
            address.sun_family = AF_UNIX;
            std::ranges::copy(path().native(), address.sun_path);
            EXPECT_EQ(::connect(fd.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
            [[maybe_unused]] const auto sent = ::send(fd.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            std::string answer;
            char buffer[256];
            for (ssize_t count = 0; (count = ::recv(fd.get(), buffer, sizeof buffer, 0)) > 0;) {
                answer.append(buffer, static_cast<std::size_t>(count));
            }
            return answer;
        });
    }

private:
    int argc_ = 1;
    std::string name_ = "tests";
    char* argv_ = name_.data();
    QCoreApplication application_{argc_, &argv_};
    std::filesystem::path folder_;
};

TEST_F(ControlSocketTest, AnswersARequest) {
    auto socket = ControlSocket::claim(path());
    ASSERT_TRUE(socket);
    ControlRequest seen;
    (*socket)->setHandler([&](const ControlRequest& request) {
        seen = request;
        return ControlReply{true, "שלום"};
    });
    const auto reply = ask({"share", {"/tmp/a b", "/tmp/קובץ"}});
    ASSERT_TRUE(reply);
    EXPECT_EQ(*reply, (ControlReply{true, "שלום"}));
    EXPECT_EQ(control::decodeReply(control::encode(ControlReply{true, "ill", true})),
              (ControlReply{true, "ill", true}));
    EXPECT_EQ(control::decodeReply(R"({"ok":true,"text":"of an earlier version"})"),
              (ControlReply{true, "of an earlier version", false}));
    EXPECT_EQ(seen, (ControlRequest{"share", {"/tmp/a b", "/tmp/קובץ"}}));
}

TEST_F(ControlSocketTest, OnlyOneAgentHoldsTheSocket) {
    const auto first = ControlSocket::claim(path());
    ASSERT_TRUE(first);
    const auto second = ControlSocket::claim(path());
    ASSERT_FALSE(second);
    EXPECT_EQ(second.error(), ClaimError::alreadyRunning);
}

TEST_F(ControlSocketTest, ASocketLeftBehindIsReplaced) {
    {
        const core::FileDescriptor stale(::socket(AF_UNIX, SOCK_STREAM, 0));
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::ranges::copy(path().native(), address.sun_path);
        ASSERT_EQ(::bind(stale.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    ASSERT_TRUE(std::filesystem::exists(path()));
    EXPECT_TRUE(ControlSocket::claim(path()));
}

TEST_F(ControlSocketTest, SocketIsForItsUserOnlyAndGoesWithTheAgent) {
    {
        const auto socket = ControlSocket::claim(path());
        ASSERT_TRUE(socket);

        struct stat status {};

        ASSERT_EQ(::stat(path().c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0600U);
    }
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(ControlSocketTest, FolderAndLockAreOpenToTheUserWhateverTheMask) {
    const auto inNewFolder = path().parent_path() / "runtime" / "quillane.sock";
    const mode_t before = ::umask(0777);
    {
        const auto first = ControlSocket::claim(inNewFolder);
        EXPECT_TRUE(first);
        const auto second = ControlSocket::claim(inNewFolder);
        EXPECT_FALSE(second);
        EXPECT_EQ(second.error(), ClaimError::alreadyRunning);
    }
    EXPECT_TRUE(ControlSocket::claim(inNewFolder)) << "the lock file that the first agent left can be opened";
    ::umask(before);
    for (const auto& [file, mode] : {std::pair(inNewFolder.parent_path(), 0700U),
                                     std::pair(std::filesystem::path(inNewFolder.native() + ".lock"), 0600U)}) {
        struct stat status {};

        ASSERT_EQ(::stat(file.c_str(), &status), 0) << file;
        EXPECT_EQ(status.st_mode & 0777, mode) << file;
    }
}

TEST_F(ControlSocketTest, ARequestBeforeTheHandlerIsAnsweredLater) {
    auto socket = ControlSocket::claim(path());
    ASSERT_TRUE(socket);
    std::optional<tl::expected<ControlReply, std::errc>> reply;
    std::thread early([&] { reply = sendControlRequest(path(), {"status", {}}, 5s); });
    (*socket)->setHandler([](const ControlRequest&) { return ControlReply{true, "late"}; });
    QElapsedTimer elapsed;
    elapsed.start();
    while (!reply && elapsed.elapsed() < 5'000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    early.join();
    ASSERT_TRUE(reply.value());
    EXPECT_EQ((*reply)->text, "late");
}

TEST_F(ControlSocketTest, NoAgentIsAnError) {
    EXPECT_EQ(sendControlRequest(path(), {"status", {}}, 1s).error(), std::errc::no_such_file_or_directory);
}

TEST_F(ControlSocketTest, AnAgentThatDoesNotAnswerIsATimeout) {
    const auto socket = ControlSocket::claim(path());
    EXPECT_EQ(sendControlRequest(path(), {"status", {}}, 50ms).error(), std::errc::timed_out);
}

TEST_F(ControlSocketTest, NonsenseIsRefusedAndDoesNotReachTheHandler) {
    auto socket = ControlSocket::claim(path());
    ASSERT_TRUE(socket);
    int calls = 0;
    (*socket)->setHandler([&](const ControlRequest&) {
        ++calls;
        return ControlReply{};
    });
    for (const std::string line : {"", "nonsense", "{}", "[]", R"({"command":1,"arguments":[]})",
                                   R"({"command":"x","arguments":[1]})", R"({"command":"x"})", "\xff\xfe"}) {
        const auto reply = control::decodeReply(sendRaw(line + "\n"));
        ASSERT_TRUE(reply) << line;
        EXPECT_FALSE(reply->ok) << line;
    }
    EXPECT_FALSE(control::decodeReply(sendRaw(std::string(control::maximumLineBytes + 1, 'x')))->ok);
    EXPECT_EQ(calls, 0);
}

TEST_F(ControlSocketTest, AHandlerMayEndTheServer) {
    auto socket = ControlSocket::claim(path());
    ASSERT_TRUE(socket);
    (*socket)->setHandler([&](const ControlRequest&) {
        socket->reset();
        return ControlReply{};
    });
    EXPECT_FALSE(ask({"quit", {}}));
    EXPECT_EQ(*socket, nullptr);
}

} // namespace
} // namespace quillane
