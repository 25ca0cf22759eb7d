// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "servers/FaultServer.hpp"

#include "support/Waiting.hpp"

#include <algorithm>
#include <charconv>
#include <fstream>

namespace quillane::servers {

tl::expected<FaultServer, std::string> FaultServer::start() {
    auto folder = live::TemporaryFolder::create("quillane-faults");
    if (!folder) {
        return tl::unexpected(folder.error());
    }
    const auto output = folder->path() / "output";
    auto process = live::ChildProcess::start(
        {.arguments = {"/usr/bin/python3", QUILLANE_SERVERS "/fault_server.py", folder->path() / "log"},
         .environment = {{"PATH", "/usr/bin:/bin"}},
         .output = output,
         .errors = folder->path() / "errors"});
    if (!process) {
        return tl::unexpected(process.error());
    }
    const bool isUp = live::waitUntil([&] { return live::readFile(output).ends_with('\n') || !process->isRunning(); });
    const auto text = live::readFile(output);
    std::uint16_t port = 0;
    if (!isUp || std::from_chars(text.data(), text.data() + text.size(), port).ec != std::errc()) {
        return tl::unexpected("the fault server did not start: " + live::readFile(folder->path() / "errors"));
    }
    return FaultServer(*std::move(folder), *std::move(process), port);
}

std::string FaultServer::address(const std::string& fault) const {
    return "http://127.0.0.1:" + std::to_string(port_) + '/' + fault;
}

std::vector<nlohmann::json> FaultServer::log() const {
    std::vector<nlohmann::json> entries;
    std::ifstream file(folder_.path() / "log");
    for (std::string line; std::getline(file, line);) {
        if (auto entry = nlohmann::json::parse(line, nullptr, false); !entry.is_discarded()) {
            entries.push_back(std::move(entry));
        }
    }
    return entries;
}

std::vector<nlohmann::json> FaultServer::events(const std::string& event, const std::string& fault) const {
    auto entries = log();
    std::erase_if(entries, [&](const nlohmann::json& entry) {
        return entry.value("event", "") != event || !entry.value("path", "").starts_with('/' + fault + '/');
    });
    return entries;
}

} // namespace quillane::servers
