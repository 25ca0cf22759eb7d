// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/fixture/LiveDesktop.hpp"

namespace quillane::live {

/// LibreOffice Writer in front, with a document of the paragraphs "one", "two" and "three" and the cursor before "one".
class LiveWriter {
public:
    [[nodiscard]] static tl::expected<LiveWriter, std::string> start(LiveDesktop& desktop);

    [[nodiscard]] pid_t pid() const { return process_.pid(); }

    /// The paragraph at the cursor; none when no paragraph has the focus.
    [[nodiscard]] std::optional<std::string> paragraph() const;

    /// Saves the document by the keyboard and returns the direction of each paragraph, as the file has it: "one rl-tb".
    [[nodiscard]] std::vector<std::string> savedDirections() const;

private:
    LiveWriter(LiveDesktop& desktop, ChildProcess process, std::filesystem::path document)
        : desktop_(&desktop), process_(std::move(process)), document_(std::move(document)) {}

    LiveDesktop* desktop_;
    ChildProcess process_;
    std::filesystem::path document_;
};

} // namespace quillane::live
