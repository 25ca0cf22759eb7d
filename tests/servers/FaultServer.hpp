// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "support/ChildProcess.hpp"
#include "support/Files.hpp"
#include "support/TemporaryFolder.hpp"

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace quillane::servers {

/// fault_server.py on a free port of 127.0.0.1, ended with this object.
class FaultServer {
public:
    [[nodiscard]] static tl::expected<FaultServer, std::string> start();

    /// The address of the fault: "http://127.0.0.1:port/fault".
    [[nodiscard]] std::string address(const std::string& fault) const;

    [[nodiscard]] std::uint16_t port() const { return port_; }

    /// What the server has noted until now.
    [[nodiscard]] std::vector<nlohmann::json> log() const;

    /// The noted events of this kind, of requests below this fault.
    [[nodiscard]] std::vector<nlohmann::json> events(const std::string& event, const std::string& fault) const;

private:
    FaultServer(live::TemporaryFolder folder, live::ChildProcess process, std::uint16_t port)
        : folder_(std::move(folder)), process_(std::move(process)), port_(port) {}

    live::TemporaryFolder folder_;
    live::ChildProcess process_;
    std::uint16_t port_;
};

} // namespace quillane::servers
