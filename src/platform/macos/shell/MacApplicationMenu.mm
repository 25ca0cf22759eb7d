// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/shell/MacApplicationMenu.hpp"

#include "platform/macos/foundation/MacStrings.hpp"
#include "platform/macos/shell/MacMenuRows.hpp"
#include "platform/macos/shell/MacStandardCommands.hpp"

#import <AppKit/AppKit.h>

namespace quillane {

namespace {

NSMenu* submenu(const ApplicationSubmenu& menu, LayoutDirection direction) {
    NSMenu* result = [[NSMenu alloc] initWithTitle:nsString(menu.title)];
    result.userInterfaceLayoutDirection = layoutDirection(direction);
    for (const auto& row : menu.rows) {
        [result addItem:row.standard ? standardMenuItem(*row.standard, row.row) : menuItem(row.row)];
    }
    return result;
}

} // namespace

struct MacApplicationMenu::Menu {
    NSMenu* installed = nil;
};

MacApplicationMenu::MacApplicationMenu() : menu_(std::make_unique<Menu>()) {}

MacApplicationMenu::~MacApplicationMenu() {
    NSApplication* application = NSApplication.sharedApplication;
    if (menu_->installed && application.mainMenu == menu_->installed) {
        application.windowsMenu = nil;
        application.mainMenu = nil;
    }
}

void MacApplicationMenu::install(std::vector<ApplicationSubmenu> menus, LayoutDirection direction) {
    @autoreleasepool {
        NSApplication* application = NSApplication.sharedApplication;
        NSMenu* bar = [[NSMenu alloc] initWithTitle:@""];
        bar.userInterfaceLayoutDirection = layoutDirection(direction);
        NSMenu* windows = nil;
        for (const auto& menu : menus) {
            NSMenuItem* item = [bar addItemWithTitle:nsString(menu.title) action:nil keyEquivalent:@""];
            item.submenu = submenu(menu, direction);
            if (menu.role == ApplicationSubmenu::Role::windows) {
                windows = item.submenu;
            }
        }
        application.mainMenu = bar;
        application.windowsMenu = windows;
        menu_->installed = bar;
    }
}

} // namespace quillane
