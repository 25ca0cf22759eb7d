// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/LiveAgent.hpp"

#include <glib.h>

namespace quillane::live {

std::filesystem::path agentExecutable() {
    return QUILLANE_AGENT;
}

tl::expected<LiveAgent, std::string> LiveAgent::start(LiveDesktop& desktop, bool waitForMonitor,
                                                      const Environment& more) {
    auto process = desktop.startProcess({agentExecutable()}, more);
    if (!process) {
        return tl::unexpected(process.error());
    }
    LiveAgent agent(desktop, std::move(*process));
    const bool ready = agent.waitForStatus(
        [&](const nlohmann::json& status) { return !waitForMonitor || status.value("monitorRunning", false); });
    if (!ready) {
        return tl::unexpected("the agent does not get ready: " + agent.status().dump() + "\n" +
                              readFile(desktop.logFolder() / "quillane.log"));
    }
    return agent;
}

CommandResult LiveAgent::command(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), agentExecutable());
    return desktop_->run(std::move(arguments));
}

nlohmann::json LiveAgent::status() const {
    const auto result = command({"status", "--json"});
    return result.succeeded() ? nlohmann::json::parse(result.output, nullptr, false) : nlohmann::json();
}

bool LiveAgent::waitForStatus(const std::function<bool(const nlohmann::json&)>& condition,
                              std::chrono::milliseconds limit) const {
    return waitUntil(
        [&] {
            const auto now = status();
            return now.is_object() && condition(now);
        },
        limit, std::chrono::milliseconds{20});
}

bool LiveAgent::bringToFront(pid_t pid) const {
    return desktop_->bringToFront(pid) &&
           waitForStatus([&](const auto& status) { return status.at("frontProcess") == pid; });
}

bool LiveAgent::useGroup(int group, bool isRightToLeft) const {
    desktop_->screen().lockGroup(group);
    return waitForStatus(
        [&](const nlohmann::json& status) { return status.at("inputSource").at("isRTL") == isRightToLeft; });
}

bool writeAgentSettings(const LiveDesktop& desktop, const std::map<std::string, std::string>& entries) {
    std::string list = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
)";
    for (const auto& [key, value] : entries) {
        list += "<key>" + key + "</key>" + value + "\n";
    }
    list += "</dict></plist>\n";
    const auto folder = desktop.home() / ".config/quillane";
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return !error && writeFile(folder / "defaults.plist", list);
}

bool chooseAgentLanguage(const LiveDesktop& desktop, const std::string& language) {
    const std::string record = nlohmann::json{{"language", language}, {"userSelectedLanguage", true}}.dump();
    gchar* encoded = g_base64_encode(reinterpret_cast<const guchar*>(record.data()), record.size());
    const std::string data = encoded;
    g_free(encoded);
    return writeAgentSettings(desktop, {{"QuillaneInstallationV1", "<data>" + data + "</data>"}});
}

} // namespace quillane::live
