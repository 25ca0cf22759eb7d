// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.hpp"

#include <memory>

namespace quillane {

/// The agent's item in the menu bar: an NSStatusItem of variable length with an NSMenu (AppKit).
class MacStatusItem final : public StatusItem {
public:
    MacStatusItem();
    ~MacStatusItem() override;

    /// Shows the coverage as a template NSImage, which the menu bar tints.
    void setImage(const TemplateImage& image, const std::string& accessibilityLabel) override;

    void setMenu(std::vector<MenuRow> rows, LayoutDirection direction) override;

    /// NSStatusItem.visible: false when the user has dragged the item out of the menu bar.
    [[nodiscard]] bool isVisible() const override;

    /// -[NSControl performClick:] on the item's button, after the call.
    void popUpMenu() override;

    /// UNUserNotificationCenter.
    void notify(const std::string& title, const std::string& text, std::function<void()> failed) override;

private:
    struct Item;
    std::unique_ptr<Item> item_;
};

} // namespace quillane
