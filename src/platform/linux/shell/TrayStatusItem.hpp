// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.hpp"

#include <memory>

namespace quillane {

/// The status item in the system tray: StatusNotifierItem where the session has it, else the XEmbed tray (both through
/// QSystemTrayIcon). Its menu opens on either mouse button. A tray that starts later shows the item then.
class TrayStatusItem final : public StatusItem {
public:
    TrayStatusItem();
    ~TrayStatusItem() override;

    void setImage(const TemplateImage& image, const std::string& accessibilityLabel) override;
    void setMenu(std::vector<MenuRow> rows, LayoutDirection direction) override;
    [[nodiscard]] bool isVisible() const override;
    void popUpMenu() override;

    /// Through the tray's balloon, and without a tray through org.freedesktop.Notifications, if the session has it.
    void notify(const std::string& title, const std::string& text, std::function<void()> failed) override;

private:
    class Tray;
    std::unique_ptr<Tray> tray_;
};

} // namespace quillane
