// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/fixture/LiveDesktop.hpp"

#include <nlohmann/json.hpp>

namespace quillane::live {

/// The form stand-in, running in front: a window with the fields "plain", "password" and "readonly" that reports what
/// it gets.
class LiveForm {
public:
    /// `windowClass` decides which application it is for the agent.
    [[nodiscard]] static tl::expected<LiveForm, std::string> start(LiveDesktop& desktop, const std::string& focus,
                                                                   const std::string& windowClass = "FormStandIn");

    [[nodiscard]] pid_t pid() const { return process_.pid(); }

    /// Everything that happened so far, in order.
    [[nodiscard]] std::vector<nlohmann::json> events() const;

    /// The events of one kind: "press", "release", "text", "focus", "blur", "click", "scroll", "menu".
    [[nodiscard]] std::vector<nlohmann::json> events(const std::string& kind) const;

    /// The text in a field.
    [[nodiscard]] std::string text(const std::string& field) const;

private:
    LiveForm(ChildProcess process, std::filesystem::path report)
        : process_(std::move(process)), report_(std::move(report)) {}

    ChildProcess process_;
    std::filesystem::path report_;
};

} // namespace quillane::live
