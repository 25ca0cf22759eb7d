// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/SinkServer.hpp"

#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>

namespace quillane::bench {

namespace {

sockaddr_in loopback() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// The value of a header, empty when it is absent.
std::string header(const std::string& head, const char* name) {
    for (auto line = head.find("\r\n"); line != std::string::npos; line = head.find("\r\n", line + 2)) {
        const auto begin = line + 2;
        const auto colon = head.find(": ", begin);
        if (colon != std::string::npos && ::strcasecmp(head.substr(begin, colon - begin).c_str(), name) == 0) {
            return head.substr(colon + 2, head.find("\r\n", colon) - colon - 2);
        }
    }
    return {};
}

void sendAll(int connection, const std::string& text) {
    static_cast<void>(::send(connection, text.data(), text.size(), MSG_NOSIGNAL)); // short: fits into the buffer
}

} // namespace

SinkServer::SinkServer() : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    auto address = loopback();
    socklen_t length = sizeof address;
    if (::bind(listener_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listener_.get(), 8) != 0 ||
        ::getsockname(listener_.get(), reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        throw std::runtime_error("no port on 127.0.0.1");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { run(); });
}

SinkServer::~SinkServer() {
    ending_ = true;
    ::shutdown(listener_.get(), SHUT_RDWR); // makes accept return
    thread_.join();
}

void SinkServer::run() {
    while (!ending_) {
        const core::FileDescriptor connection(::accept(listener_.get(), nullptr, nullptr));
        if (connection) {
            serve(connection.get());
        }
    }
}

void SinkServer::serve(int connection) {
    std::vector<char> buffer(1U << 20U);
    std::string head;
    auto end = std::string::npos;
    while ((end = head.find("\r\n\r\n")) == std::string::npos) {
        const auto count = ::recv(connection, buffer.data(), buffer.size(), 0);
        if (count <= 0) {
            return;
        }
        head.append(buffer.data(), static_cast<std::size_t>(count));
    }
    auto left = std::strtoll(header(head, "content-length").c_str(), nullptr, 10);
    left -= static_cast<long long>(head.size() - end - 4);
    if (left > 0 && head.find("100-continue") != std::string::npos) {
        sendAll(connection, "HTTP/1.1 100 Continue\r\n\r\n");
    }
    while (left > 0) {
        const auto count = ::recv(connection, buffer.data(), buffer.size(), 0);
        if (count <= 0) {
            return;
        }
        left -= count;
    }
    auto host = header(head, "host");
    const auto path = head.substr(4, head.find(' ', 4) - 4);
    const auto scheme = header(head, "x-forwarded-proto");
    const auto name = path.substr(path.rfind('/'));
    const auto link =
        (scheme.empty() ? "http" : scheme) + "://" + host + path.substr(0, path.rfind('/')) + "/token" + name + '\n';
    sendAll(connection, "HTTP/1.1 201 Created\r\nConnection: close\r\nContent-Length: " + std::to_string(link.size()) +
                            "\r\n\r\n" + link);
}

} // namespace quillane::bench
