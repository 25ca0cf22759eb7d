// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.hpp"
#include "support/Journal.hpp"

#include <string_view>

namespace quillane::fakes {

/// A status item that keeps what it was given and lets a test choose a row.
class FakeStatusItem final : public StatusItem {
public:
    struct Notice {
        std::string title;
        std::string text;

        bool operator==(const Notice&) const = default;
    };

    void setImage(const TemplateImage& image, const std::string& accessibilityLabel) override;
    void setMenu(std::vector<MenuRow> rows, LayoutDirection direction) override;

    [[nodiscard]] bool isVisible() const override { return visible_; }

    void popUpMenu() override { ++popUpCount_; }

    void notify(const std::string& title, const std::string& text, std::function<void()> failed) override;

    /// The row with this title. Throws when the menu has none or several.
    [[nodiscard]] const MenuRow& row(std::string_view title) const;

    /// Chooses the row as a user would. Throws when it cannot be chosen: no item, or disabled.
    void click(std::string_view title);

    Journal* journal = nullptr; ///< none: nothing is recorded

    void setVisible(bool visible) { visible_ = visible; }

    /// From now on nobody shows notices. `failNotices` says so to those who gave one.
    void setRefusesNotices() { refusesNotices_ = true; }

    void failNotices();

    [[nodiscard]] const std::vector<MenuRow>& rows() const { return rows_; }

    [[nodiscard]] LayoutDirection direction() const { return direction_; }

    [[nodiscard]] const TemplateImage& image() const { return image_; }

    [[nodiscard]] const std::string& accessibilityLabel() const { return accessibilityLabel_; }

    [[nodiscard]] const std::vector<Notice>& notices() const { return notices_; }

    /// How often the menu was opened by the program itself.
    [[nodiscard]] int popUpCount() const { return popUpCount_; }

    /// How often the image really changed, and how often rows were set.
    [[nodiscard]] int imageCount() const { return imageCount_; }

    [[nodiscard]] int menuCount() const { return menuCount_; }

private:
    std::vector<MenuRow> rows_;
    LayoutDirection direction_ = LayoutDirection::leftToRight;
    TemplateImage image_;
    std::string accessibilityLabel_;
    std::vector<Notice> notices_;
    std::vector<std::function<void()>> failed_; ///< of the notices that nobody shows
    bool refusesNotices_ = false;
    bool visible_ = true;
    int imageCount_ = 0;
    int menuCount_ = 0;
    int popUpCount_ = 0;
};

} // namespace quillane::fakes
