// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/direction/LiveOffice.hpp"

namespace quillane::live {

/// LibreOffice Writer in front, with a document of the paragraphs "one", "two" and "three" and the cursor before "one".
class LiveWriter {
public:
    /// `language` is the code of Writer's interface language.
    [[nodiscard]] static tl::expected<LiveWriter, std::string> start(LiveDesktop& desktop,
                                                                     const std::string& language = "en-US");

    [[nodiscard]] pid_t pid() const { return office_.pid(); }

    /// The paragraph at the cursor; none when no paragraph has the focus.
    [[nodiscard]] std::optional<std::string> paragraph() const { return office_.paragraph(); }

    /// Saves the document by the keyboard and returns the direction of each paragraph, as the file has it: "one rl-tb".
    [[nodiscard]] std::vector<std::string> savedDirections() const;

private:
    explicit LiveWriter(LiveOffice office) : office_(std::move(office)) {}

    LiveOffice office_;
};

} // namespace quillane::live
