// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/shell/MacMenuRows.hpp"

#include "platform/macos/foundation/MacCallback.hpp"
#include "platform/macos/foundation/MacStrings.hpp"
#include "platform/macos/shell/MacSystemSymbols.hpp"

/// The target of one menu item, which owns it as its represented object.
@interface QuillaneMenuRow : NSObject <NSMenuItemValidation>
@property(nonatomic) quillane::MenuRow row;
- (void)choose:(id)sender;
@end

@implementation QuillaneMenuRow

- (void)choose:(id)sender {
    const auto action = _row.action; // the action may replace the row
    quillane::guarded([&] {
        if (action) {
            action();
        }
    });
}

- (BOOL)validateMenuItem:(NSMenuItem*)item {
    return _row.enabled;
}

@end

namespace quillane {

namespace {

NSImage* rowImage(const MenuRow& row) {
    switch (row.icon) {
    case MenuRow::Icon::none:
        return nil;
    case MenuRow::Icon::symbol:
        return menuIcon(row.symbol);
    case MenuRow::Icon::application:
        return menuApplicationIcon();
    }
    return nil;
}

/// Updates an item from its previous row; a new item has a default row. Only differences are applied: menus are set
/// every few seconds, mostly unchanged.
void show(NSMenuItem* item, const MenuRow& row, const MenuRow& before) {
    if (row.title != before.title) {
        item.title = nsString(row.title);
    }
    if (row.keyEquivalent != before.keyEquivalent) {
        item.keyEquivalent = nsString(row.keyEquivalent);
    }
    if (row.toolTip != before.toolTip) {
        item.toolTip = row.toolTip.empty() ? nil : nsString(row.toolTip);
    }
    if (row.icon != before.icon || row.symbol != before.symbol) {
        item.image = rowImage(row);
    }
    item.state = row.checked ? NSControlStateValueOn : NSControlStateValueOff;
    item.enabled = row.enabled && row.kind == MenuRow::Kind::item;
}

} // namespace

NSMenuItem* menuItem(const MenuRow& row) {
    if (row.kind == MenuRow::Kind::separator) {
        return [NSMenuItem separatorItem];
    }
    QuillaneMenuRow* target = [[QuillaneMenuRow alloc] init];
    target.row = row;
    NSMenuItem* item = [[NSMenuItem alloc] initWithTitle:@"" action:@selector(choose:) keyEquivalent:@""];
    item.target = target; // held weakly
    item.representedObject = target;
    show(item, row, {});
    return item;
}

void showRows(NSMenu* menu, const std::vector<MenuRow>& rows) {
    NSInteger index = 0;
    for (const auto& row : rows) {
        NSMenuItem* item = index < menu.numberOfItems ? [menu itemAtIndex:index] : nil;
        if (!item || item.separatorItem != (row.kind == MenuRow::Kind::separator)) {
            [menu insertItem:menuItem(row) atIndex:index];
        } else if (!item.separatorItem) {
            QuillaneMenuRow* target = item.representedObject;
            show(item, row, target.row);
            target.row = row;
        }
        ++index;
    }
    while (menu.numberOfItems > index) {
        [menu removeItemAtIndex:index];
    }
}

NSUserInterfaceLayoutDirection layoutDirection(LayoutDirection direction) {
    return direction == LayoutDirection::rightToLeft ? NSUserInterfaceLayoutDirectionRightToLeft
                                                     : NSUserInterfaceLayoutDirectionLeftToRight;
}

} // namespace quillane
