// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "fileshare/FileShareModel.hpp"

#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// The window of one shared file: 530 × 350 points, in the middle of the screen. Closing it cancels its upload. Files
/// that are dropped on it are passed on.
class FileShareWindow : public QWidget {
    Q_OBJECT

public:
    FileShareWindow(core::Url file, const FileShareServices& services);

    [[nodiscard]] FileShareModel& model() { return model_; }

    /// Called once when the window has closed. It may destroy the window later, not inside the call.
    std::function<void()> onClose;

    /// Called with the URLs that were dropped. What it returns is shown.
    std::function<std::optional<core::LocalizedText>(const std::vector<std::string>& urls)> onDrop;

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    core::AppPreferences& preferences_;
    FileShareModel model_;
};

} // namespace quillane
