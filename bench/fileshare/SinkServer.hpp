// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/FileDescriptor.hpp"

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

namespace quillane::bench {

/// A file server on 127.0.0.1 that reads what is PUT as fast as it can, forgets it and answers with a link. One
/// connection at a time.
class SinkServer {
public:
    SinkServer();
    SinkServer(const SinkServer&) = delete;
    SinkServer& operator=(const SinkServer&) = delete;
    ~SinkServer();

    [[nodiscard]] std::uint16_t port() const { return port_; }

private:
    void run();
    static void serve(int connection);

    core::FileDescriptor listener_;
    std::uint16_t port_ = 0;
    std::atomic<bool> ending_ = false;
    std::thread thread_;
};

} // namespace quillane::bench
