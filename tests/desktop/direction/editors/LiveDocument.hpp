// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/fixture/LiveDesktop.hpp"

#include <nlohmann/json.hpp>

namespace quillane::live {

/// The editor stand-in in front, as one of the applications whose context menu turns paragraphs. Its body has two
/// paragraphs, and a word of the second is selected; a field of one line is beside it.
class LiveDocument {
public:
    /// `options` are those of the stand-in, besides the application and the report.
    [[nodiscard]] static tl::expected<LiveDocument, std::string>
    start(LiveDesktop& desktop, const std::string& application, const std::vector<std::string>& options = {});

    [[nodiscard]] ChildProcess& process() { return process_; }

    [[nodiscard]] pid_t pid() const { return process_.pid(); }

    /// What it said last: the "directions" of its paragraphs, the last being the field's, "selection", "text", "focus",
    /// how often it was "asked" for its "menu", whether that is open, and the commands "chosen".
    [[nodiscard]] nlohmann::json state() const;

private:
    LiveDocument(ChildProcess process, std::filesystem::path report)
        : process_(std::move(process)), report_(std::move(report)) {}

    ChildProcess process_;
    std::filesystem::path report_;
};

} // namespace quillane::live
