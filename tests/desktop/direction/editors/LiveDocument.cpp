// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/direction/editors/LiveDocument.hpp"

#include <sstream>

namespace quillane::live {

tl::expected<LiveDocument, std::string> LiveDocument::start(LiveDesktop& desktop, const std::string& application,
                                                            const std::vector<std::string>& options) {
    const auto report = desktop.home() / "document.jsonl";
    std::vector<std::string> command{QUILLANE_EDITOR, "--report", report, "--application", application};
    command.insert(command.end(), options.begin(), options.end());
    auto process = desktop.startApplication(command);
    if (!process) {
        return tl::unexpected(process.error());
    }
    LiveDocument document(std::move(*process), report);
    const auto isReady = [&] {
        return document.state().value("focus", "none") != "none" && desktop.accessibility().application(document.pid());
    };
    if (!waitUntil(isReady)) {
        return tl::unexpected(std::string("no field of the document gets the focus"));
    }
    return document;
}

nlohmann::json LiveDocument::state() const {
    auto last = nlohmann::json::object();
    std::istringstream lines(readFile(report_));
    for (std::string line; std::getline(lines, line);) {
        if (auto state = nlohmann::json::parse(line, nullptr, false); state.is_object()) {
            last = std::move(state);
        }
    }
    return last;
}

} // namespace quillane::live
