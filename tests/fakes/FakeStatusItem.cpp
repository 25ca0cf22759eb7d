// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fakes/FakeStatusItem.hpp"

#include "support/MenuRows.hpp"

#include <algorithm>
#include <utility>

namespace quillane::fakes {

void FakeStatusItem::setImage(const TemplateImage& image, const std::string& accessibilityLabel) {
    if (image.width <= 0 || image.height <= 0 || image.scale <= 0 ||
        image.coverage.size() != static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height)) {
        throw std::invalid_argument("The image's coverage does not fit its size");
    }
    imageCount_ += image == image_ ? 0 : 1;
    image_ = image;
    accessibilityLabel_ = accessibilityLabel;
}

void FakeStatusItem::setMenu(std::vector<MenuRow> rows, LayoutDirection direction) {
    note(journal, "setMenu");
    ++menuCount_;
    rows_ = std::move(rows);
    direction_ = direction;
}

void FakeStatusItem::notify(const std::string& title, const std::string& text, std::function<void()> failed) {
    if (refusesNotices_) {
        failed_.push_back(std::move(failed));
    } else {
        notices_.push_back({title, text});
    }
}

void FakeStatusItem::failNotices() {
    for (const auto& failed : std::exchange(failed_, {})) {
        if (failed) {
            failed();
        }
    }
}

const MenuRow& FakeStatusItem::row(std::string_view title) const {
    const auto found = std::ranges::find(rows_, title, &MenuRow::title);
    if (found == rows_.end() || std::ranges::count(rows_, title, &MenuRow::title) > 1) {
        throw std::out_of_range("Not exactly one row has the title " + std::string(title));
    }
    return *found;
}

void FakeStatusItem::click(std::string_view title) {
    choose(row(title));
}

} // namespace quillane::fakes
