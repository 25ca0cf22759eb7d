// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/StatusItemContract.hpp"
#include "platform/macos/MacDriver.hpp"
#include "platform/macos/foundation/MacStrings.hpp"
#include "platform/macos/shell/MacMenuRows.hpp"

namespace quillane {
namespace {

/// A status item's menu without its place in the menu bar, which no program can open for another.
class MenuOnly final : public StatusItem {
public:
    MenuOnly() { menu_.autoenablesItems = NO; }

    void setImage(const TemplateImage&, const std::string&) override {}

    void setMenu(std::vector<MenuRow> rows, LayoutDirection) override { showRows(menu_, rows); }

    [[nodiscard]] bool isVisible() const override { return true; }

    void popUpMenu() override {}

    void notify(const std::string&, const std::string&, std::function<void()>) override {}

    [[nodiscard]] NSMenu* menu() const { return menu_; }

private:
    NSMenu* menu_ = [[NSMenu alloc] initWithTitle:@""];
};

class MacMenuRowsDriver : public testing::MacDriver {
public:
    StatusItem& item() { return item_; }

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> titles;
        for (NSMenuItem* row in item_.menu().itemArray) {
            titles.push_back(row.separatorItem ? std::string() : std::string(row.title.UTF8String));
        }
        return titles;
    }

    [[nodiscard]] bool isChecked(const std::string& title) const {
        return [item_.menu() itemWithTitle:nsString(title)].state == NSControlStateValueOn;
    }

    void choose(const std::string& title) {
        NSMenu* menu = item_.menu();
        if (NSMenuItem* row = [menu itemWithTitle:nsString(title)]; row.enabled) {
            [menu performActionForItemAtIndex:[menu indexOfItem:row]];
        }
    }

private:
    MenuOnly item_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(MacMenu, StatusItemContract, MacMenuRowsDriver);
} // namespace testing
} // namespace quillane
