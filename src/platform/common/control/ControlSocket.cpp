// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/control/ControlSocket.hpp"

#include "core/support/FileDescriptor.hpp"
#include "platform/common/control/ControlProtocol.hpp"
#include "platform/common/control/ControlTrust.hpp"

#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace quillane {

namespace {

constexpr int maximumClients = 16;
constexpr std::chrono::seconds clientTimeout{5};

bool makeNonBlocking(int fd) {
    return ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK) == 0 && ::fcntl(fd, F_SETFD, FD_CLOEXEC) == 0;
}

/// One connection: reads a line, answers it and closes.
class Client : public QObject {
public:
    Client(core::FileDescriptor fd, const AgentControl::Handler& handler, QObject* parent)
        : QObject(parent),
          fd_(std::move(fd)),
          handler_(handler),
          readable_(fd_.get(), QSocketNotifier::Read),
          writable_(fd_.get(), QSocketNotifier::Write) {
        writable_.setEnabled(false);
        connect(&readable_, &QSocketNotifier::activated, this, [this] { read(); });
        connect(&writable_, &QSocketNotifier::activated, this, [this] { write(); });
        QTimer::singleShot(clientTimeout, this, [this] { finish(); });
    }

private:
    void read() {
        std::array<char, 4096> buffer{};
        const auto count = ::recv(fd_.get(), buffer.data(), buffer.size(), 0);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
            return;
        }
        if (count <= 0) {
            finish();
            return;
        }
        input_.append(buffer.data(), static_cast<std::size_t>(count));
        const auto end = input_.find('\n');
        if (end == std::string::npos && input_.size() <= control::maximumLineBytes) {
            return;
        }
        readable_.setEnabled(false);
        const auto request = control::decodeRequest(std::string_view(input_).substr(0, end));
        const auto alive = QPointer<Client>(this);
        const auto handler = handler_; // a handler may end the server, and with it this connection
        const auto reply = request ? handler(*request) : ControlReply{false, "The request could not be read."};
        if (alive) {
            output_ = control::encode(reply) + "\n";
            write();
        }
    }

    void write() {
        const auto count = ::send(fd_.get(), output_.data(), output_.size(), MSG_NOSIGNAL);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
            writable_.setEnabled(true);
            return;
        }
        if (count < 0) {
            finish();
            return;
        }
        output_.erase(0, static_cast<std::size_t>(count));
        writable_.setEnabled(!output_.empty());
        if (output_.empty()) {
            finish();
        }
    }

    void finish() {
        readable_.setEnabled(false);
        writable_.setEnabled(false);
        deleteLater();
    }

    core::FileDescriptor fd_;
    const AgentControl::Handler& handler_;
    QSocketNotifier readable_;
    QSocketNotifier writable_;
    std::string input_;
    std::string output_;
};

std::optional<sockaddr_un> socketAddress(const std::filesystem::path& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto& text = path.native();
    if (text.size() >= sizeof address.sun_path) {
        return std::nullopt;
    }
    std::ranges::copy(text, address.sun_path);
    return address;
}

} // namespace

class ControlSocket::Server : public QObject {
public:
    Server(core::FileDescriptor lock, core::FileDescriptor listener, std::filesystem::path path)
        : lock_(std::move(lock)), listener_(std::move(listener)), path_(std::move(path)) {}

    ~Server() override {
        ::unlink(path_.c_str()); // under the lock, so that a later agent's socket is not removed
    }

    void setHandler(Handler handler) {
        handler_ = std::move(handler);
        if (!notifier_) {
            notifier_ = std::make_unique<QSocketNotifier>(listener_.get(), QSocketNotifier::Read);
            connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { accept(); });
        }
    }

private:
    void accept() {
        core::FileDescriptor client(::accept(listener_.get(), nullptr, nullptr));
        if (!client || findChildren<QObject*>(Qt::FindDirectChildrenOnly).size() >= maximumClients ||
            !makeNonBlocking(client.get()) || !isPeerThisUser(client.get())) {
            return;
        }
        new Client(std::move(client), handler_, this); // deletes itself, at the latest with the server
    }

    core::FileDescriptor lock_;
    core::FileDescriptor listener_;
    std::filesystem::path path_;
    Handler handler_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

std::filesystem::path controlSocketPath() {
#ifdef __APPLE__
    std::array<char, 1024> folder{};
    if (::confstr(_CS_DARWIN_USER_TEMP_DIR, folder.data(), folder.size()) > 0) {
        return std::filesystem::path(folder.data()) / "quillane.sock";
    }
#else
    if (const char* folder = std::getenv("XDG_RUNTIME_DIR"); folder && *folder == '/' && isPrivateFolder(folder)) {
        // The instances of a Flatpak application have runtime folders of their own, and this part of it in common.
        const char* sandbox = std::getenv("FLATPAK_ID");
        const bool isInSandbox = sandbox != nullptr && *sandbox != '\0';
        return std::filesystem::path(folder) / (isInSandbox ? "app/" + std::string(sandbox) : "") / "quillane.sock";
    }
#endif
    return std::filesystem::path("/tmp/quillane-" + std::to_string(::geteuid())) / "quillane.sock";
}

ControlSocket::ControlSocket(std::unique_ptr<Server> server) : server_(std::move(server)) {}

ControlSocket::~ControlSocket() = default;

tl::expected<std::unique_ptr<ControlSocket>, ClaimError> ControlSocket::claim(const std::filesystem::path& path) {
    const auto address = socketAddress(path);
    const auto folder = path.parent_path();
    const bool isFolderThere =
        ::mkdir(folder.c_str(), 0700) == 0 ? ::chmod(folder.c_str(), 0700) == 0 : errno == EEXIST; // whatever the mask
    if (!address || !isFolderThere || !isPrivateFolder(folder)) {
        return tl::unexpected(ClaimError::unavailable);
    }
    core::FileDescriptor lock(::open((path.native() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock || ::fchmod(lock.get(), 0600) != 0) {
        return tl::unexpected(ClaimError::unavailable);
    }
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        return tl::unexpected(errno == EWOULDBLOCK ? ClaimError::alreadyRunning : ClaimError::unavailable);
    }
    ::unlink(path.c_str());
    core::FileDescriptor listener(::socket(AF_UNIX, SOCK_STREAM, 0));
    if (!listener || !makeNonBlocking(listener.get())) {
        return tl::unexpected(ClaimError::unavailable);
    }
    const auto mask = ::umask(0177);
    const auto bound = ::bind(listener.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address);
    ::umask(mask);
    if (bound != 0 || ::listen(listener.get(), maximumClients) != 0) {
        return tl::unexpected(ClaimError::unavailable);
    }
    return std::unique_ptr<ControlSocket>(
        new ControlSocket(std::make_unique<Server>(std::move(lock), std::move(listener), path)));
}

void ControlSocket::setHandler(Handler handler) {
    server_->setHandler(std::move(handler));
}

} // namespace quillane
