// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/LiveForm.hpp"

#include <sstream>

namespace quillane::live {

tl::expected<LiveForm, std::string> LiveForm::start(LiveDesktop& desktop, const std::string& focus,
                                                    const std::string& windowClass) {
    const auto report = desktop.home() / ("form-" + windowClass + ".jsonl");
    auto process =
        desktop.startApplication({QUILLANE_FORM, "--report", report, "--focus", focus, "--window-class", windowClass});
    if (!process) {
        return tl::unexpected(process.error());
    }
    LiveForm form(std::move(*process), report);
    const bool focused = waitUntil([&] {
        const auto events = form.events("focus");
        return !events.empty() && events.back().at("field") == focus;
    });
    if (!focused) {
        return tl::unexpected("the form's field " + focus + " does not get the focus");
    }
    return form;
}

std::vector<nlohmann::json> LiveForm::events() const {
    std::vector<nlohmann::json> result;
    std::istringstream lines(readFile(report_));
    for (std::string line; std::getline(lines, line);) {
        if (auto event = nlohmann::json::parse(line, nullptr, false); event.is_object()) {
            result.push_back(std::move(event));
        }
    }
    return result;
}

std::vector<nlohmann::json> LiveForm::events(const std::string& kind) const {
    auto result = events();
    std::erase_if(result, [&](const nlohmann::json& event) { return event.at("event") != kind; });
    return result;
}

std::string LiveForm::text(const std::string& field) const {
    std::string last;
    for (const auto& event : events("text")) {
        if (event.at("field") == field) {
            last = event.at("text");
        }
    }
    return last;
}

} // namespace quillane::live
