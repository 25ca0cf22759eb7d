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

/// The entry points to sharing a file, and its open windows. Main thread.
class FileShareService {
public:
    explicit FileShareService(FileShareServices services);
    FileShareService(const FileShareService&) = delete;
    FileShareService& operator=(const FileShareService&) = delete;
    ~FileShareService();

    /// Lets the user choose a file and shares it. Before a server is chosen, opens the settings of the server instead.
    void choose();

    /// Shares the one file that another program offers, as file URLs. With any other number, does nothing but return a
    /// message.
    [[nodiscard]] std::optional<core::LocalizedText> share(const std::vector<std::string>& urls);

    /// Shows a message of `share` to the user when the other program cannot.
    void showMessage(const core::LocalizedText& text);

    /// Opens a window for the file at the file URL, in front of everything, and starts its upload.
    void show(const core::Url& file);

    /// Cancels all running uploads; the windows stay.
    void cancelAll();

    /// The open windows, oldest first.
    [[nodiscard]] std::vector<FileShareWindow*> windows() const;

private:
    void askForServer();

    using WindowID = unsigned long long;

    /// Qt destroys a window only after its events have been handled.
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
