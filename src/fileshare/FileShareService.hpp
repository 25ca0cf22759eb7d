// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Subscription.hpp"
#include "fileshare/FileShareServices.hpp"
#include "fileshare/FileShareWindow.hpp"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// The ways in to sharing a file, and its open windows. Main thread.
class FileShareService {
public:
    explicit FileShareService(FileShareServices services);
    FileShareService(const FileShareService&) = delete;
    FileShareService& operator=(const FileShareService&) = delete;
    ~FileShareService();

    /// Lets the user choose a file, and shares it. Before there is a server, leads to where it is set instead.
    void choose();

    /// Shares the only file of what another program offers, as file URLs. With any other number nothing happens but
    /// the message that comes back.
    [[nodiscard]] std::optional<core::LocalizedText> share(const std::vector<std::string>& urls);

    /// Shows a message of `share` to a user whose own program cannot.
    void tell(const core::LocalizedText& text);

    /// Opens a window for the file at the file URL, in front of everything, and starts its upload.
    void show(const core::Url& file);

    /// Cancels every upload that runs; the windows stay.
    void cancelAll();

    /// The open windows, oldest first.
    [[nodiscard]] std::vector<FileShareWindow*> windows() const;

private:
    void askForServer();

    using WindowID = unsigned long long;

    /// Qt destroys a window only when its events have been dealt with.
    struct DeleteLater {
        void operator()(QObject* object) const { object->deleteLater(); }
    };

    [[nodiscard]] FilePanel::Texts panelTexts() const;

    FileShareServices services_;
    core::Subscription languageChange_;
    std::map<WindowID, std::unique_ptr<FileShareWindow, DeleteLater>> windows_;
    WindowID next_ = 0;
};

} // namespace quillane
