// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/office/LiveOffice.hpp"

#include <sstream>

namespace quillane::live {

void LiveOffice::TearDown() {
    AgentTest::TearDown();
    process_.reset();
}

void LiveOffice::start(const std::string& program, const std::vector<std::string>& options) {
    require(chooseAgentLanguage(desktop(), "en"), "the language in the settings");
    startAgent();
    std::vector<std::string> arguments{program};
    arguments.insert(arguments.end(), options.begin(), options.end());
    output_ = desktop().logFolder() / (std::filesystem::path(program).filename().string() + ".out");
    process_.emplace(required(desktop().startApplication(arguments)));
    require(waitUntil([&] { return !events("focus").empty(); }), "no field has the focus");
    require(agent().waitForStatus([](const auto& status) { return status.value("monitorRunning", false); }),
            "the agent observes the keyboard");
}

std::vector<nlohmann::json> LiveOffice::events(const std::string& kind) const {
    std::vector<nlohmann::json> result;
    std::istringstream lines(readFile(output_));
    for (std::string line; std::getline(lines, line);) {
        auto event = nlohmann::json::parse(line, nullptr, false);
        if (event.is_object() && event.value("event", "") == kind) {
            result.push_back(std::move(event));
        }
    }
    return result;
}

void LiveOffice::expectCount(const std::string& kind, std::size_t count) const {
    EXPECT_TRUE(waitUntil([&] { return events(kind).size() == count; })) << kind << ": " << events(kind).size();
}

void LiveOffice::expectSaid(const std::string& text) {
    EXPECT_TRUE(agent().waitForStatus([&](const auto& status) { return status.at("lastAction") == text; }))
        << agent().status();
}

void LiveOffice::expectSaidNothing() {
    EXPECT_EQ(agent().status().value("lastAction", "(no status)"), "");
}

} // namespace quillane::live
