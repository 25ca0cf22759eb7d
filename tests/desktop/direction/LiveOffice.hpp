// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/fixture/LiveDesktop.hpp"

#include <string_view>

namespace quillane::live {

/// A program of LibreOffice in front, with a document in a flat format.
class LiveOffice {
public:
    struct Document {
        std::string name; ///< of the file: "document.fodt"
        std::string_view content;
        std::string program; ///< "Writer", as the title of its window ends
    };

    /// `language` is the code of the interface language.
    [[nodiscard]] static tl::expected<LiveOffice, std::string> start(LiveDesktop& desktop, const Document& document,
                                                                     const std::string& language);

    [[nodiscard]] pid_t pid() const { return process_.pid(); }

    /// The paragraph at the cursor; none when no paragraph has the focus.
    [[nodiscard]] std::optional<std::string> paragraph() const { return desktop_->editorText(process_.pid()); }

    /// Saves the document by the keyboard and returns the file's content.
    [[nodiscard]] std::string saved() const;

private:
    LiveOffice(LiveDesktop& desktop, ChildProcess process, std::filesystem::path document)
        : desktop_(&desktop), process_(std::move(process)), document_(std::move(document)) {}

    LiveDesktop* desktop_;
    ChildProcess process_;
    std::filesystem::path document_;
};

/// The writing mode of the style that the first element which this pattern finds has, its first group being the name of
/// the style; "lr-tb" when it has none.
[[nodiscard]] std::string writingModeOf(const std::string& document, const std::string& pattern);

} // namespace quillane::live
