// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/FileDescriptor.hpp"
#include "platform/common/control/ControlProtocol.hpp"
#include "platform/common/control/ControlSocket.hpp"
#include "platform/common/control/ControlTrust.hpp"
#include "support/TemporaryFolder.hpp"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <optional>
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
    [[nodiscard]] std::filesystem::path path() const { return folder_.path() / "quillane.sock"; }

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
    live::TemporaryFolder folder_;
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

TEST_F(ControlSocketTest, CommandSendsNothingIntoAFolderThatOthersCanEnter) {
    auto socket = ControlSocket::claim(path());
    ASSERT_TRUE(socket);
    int calls = 0;
    (*socket)->setHandler([&](const ControlRequest&) {
        ++calls;
        return ControlReply{true, "heard"};
    });
    const auto folder = path().parent_path();
    for (const mode_t mode : {mode_t{0755}, mode_t{0710}, mode_t{0701}, mode_t{0770}}) {
        ASSERT_EQ(::chmod(folder.c_str(), mode), 0);
        EXPECT_EQ(ask({"status", {}}).error(), std::errc::permission_denied) << mode;
        EXPECT_FALSE(ControlSocket::claim(path())) << mode;
    }
    ASSERT_EQ(::chmod(folder.c_str(), 0700), 0);
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(ask({"status", {}}));
    const auto link = folder / "link";
    std::filesystem::create_directory_symlink(folder, link);
    const auto byLink = whileRunningLoop([&] {
        return sendControlRequest(link / "quillane.sock", {"status", {}}, 2s);
    });
    EXPECT_EQ(byLink.error(), std::errc::permission_denied);
    EXPECT_EQ(calls, 1);
}

TEST_F(ControlSocketTest, RuntimeFolderThatOthersCanEnterIsNotUsed) {
    const auto folder = path().parent_path();
    const char* before = std::getenv("XDG_RUNTIME_DIR");
    const std::optional<std::string> restored = before ? std::optional<std::string>(before) : std::nullopt;
    ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    const auto inPrivate = controlSocketPath();
    ::chmod(folder.c_str(), 0755);
    const auto inOpen = controlSocketPath();
    restored ? ::setenv("XDG_RUNTIME_DIR", restored->c_str(), 1) : ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(inPrivate, path());
    EXPECT_EQ(inOpen.parent_path().filename(), "quillane-" + std::to_string(::geteuid()));
}

/// Needs root, to listen as another user.
TEST_F(ControlSocketTest, ListenerOfAnotherUserIsNotSpokenTo) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs root";
    }
    constexpr uid_t nobody = 65534;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::ranges::copy(path().native(), address.sun_path);
    const core::FileDescriptor listener(::socket(AF_UNIX, SOCK_STREAM, 0));
    ASSERT_EQ(::bind(listener.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::seteuid(nobody), 0);
    const int listening = ::listen(listener.get(), 1); // whose user the other side is shown
    ASSERT_EQ(::seteuid(0), 0);
    ASSERT_EQ(listening, 0);
    EXPECT_EQ(sendControlRequest(path(), {"status", {}}, 2s).error(), std::errc::permission_denied);
    const core::FileDescriptor client(::accept(listener.get(), nullptr, nullptr));
    char heard = 0;
    EXPECT_EQ(::recv(client.get(), &heard, 1, 0), 0) << "something was sent";
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
