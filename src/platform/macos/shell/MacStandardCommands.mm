// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/shell/MacStandardCommands.hpp"

#include "platform/macos/foundation/MacStrings.hpp"

#import <Carbon/Carbon.h>

namespace {

/// The view that contains all widgets of one Qt window if it has the focus; otherwise nil.
NSResponder* focusedWidgets() {
    NSResponder* focused = NSApplication.sharedApplication.keyWindow.firstResponder;
    return [focused isKindOfClass:NSClassFromString(@"QNSView")] ? focused : nil;
}

} // namespace

/// An editing command. Text fields of AppKit take its action. Qt's view claims to handle it too, but can only act on
/// the items of Qt's own menus; its widgets recognise the command by its key, so they receive the key.
@interface QuillaneEditingCommand : NSObject <NSMenuItemValidation>
@property(nonatomic) SEL action;
@property(nonatomic) unsigned short keyCode;
- (void)choose:(NSMenuItem*)item;
@end

@implementation QuillaneEditingCommand

- (void)choose:(NSMenuItem*)item {
    NSResponder* widgets = focusedWidgets();
    if (!widgets) {
        [NSApplication.sharedApplication sendAction:_action to:nil from:item];
        return;
    }
    NSString* key = item.keyEquivalent;
    NSEvent* press = [NSEvent keyEventWithType:NSEventTypeKeyDown
                                      location:NSZeroPoint
                                 modifierFlags:item.keyEquivalentModifierMask
                                     timestamp:NSProcessInfo.processInfo.systemUptime
                                  windowNumber:NSApplication.sharedApplication.keyWindow.windowNumber
                                       context:nil
                                    characters:key
                   charactersIgnoringModifiers:key
                                     isARepeat:NO
                                       keyCode:_keyCode];
    [widgets keyDown:press];
}

- (BOOL)validateMenuItem:(NSMenuItem*)item {
    return focusedWidgets() || [NSApplication.sharedApplication targetForAction:_action to:nil from:item];
}

@end

namespace quillane {

namespace {

struct Description {
    SEL action;
    NSString* key;
    NSEventModifierFlags modifiers;
    bool editing;
    unsigned short keyCode; ///< of editing commands
};

Description description(StandardCommand command) {
    constexpr auto onlyCommand = NSEventModifierFlagCommand;
    switch (command) {
    case StandardCommand::undo:
        return {
            @selector(undo:), @"z", onlyCommand, true, kVK_ANSI_Z
        };
    case StandardCommand::redo:
        return {
            @selector(redo:), @"z", onlyCommand | NSEventModifierFlagShift, true, kVK_ANSI_Z
        };
    case StandardCommand::cut:
        return {
            @selector(cut:), @"x", onlyCommand, true, kVK_ANSI_X
        };
    case StandardCommand::copy:
        return {
            @selector(copy:), @"c", onlyCommand, true, kVK_ANSI_C
        };
    case StandardCommand::paste:
        return {
            @selector(paste:), @"v", onlyCommand, true, kVK_ANSI_V
        };
    case StandardCommand::selectAll:
        return {
            @selector(selectAll:), @"a", onlyCommand, true, kVK_ANSI_A
        };
    case StandardCommand::minimize:
        return {
            @selector(performMiniaturize:), @"m", onlyCommand, false, 0
        };
    case StandardCommand::close:
        return {
            @selector(performClose:), @"w", onlyCommand, false, 0
        };
    case StandardCommand::hide:
        return {
            @selector(hide:), @"h", onlyCommand, false, 0
        };
    }
    return {};
}

} // namespace

NSMenuItem* standardMenuItem(StandardCommand command, const MenuRow& row) {
    const auto what = description(command);
    NSMenuItem* item = [[NSMenuItem alloc] initWithTitle:nsString(row.title) action:what.action keyEquivalent:what.key];
    item.keyEquivalentModifierMask = what.modifiers;
    if (what.editing) {
        QuillaneEditingCommand* target = [[QuillaneEditingCommand alloc] init];
        target.action = what.action;
        target.keyCode = what.keyCode;
        item.action = @selector(choose:);
        item.target = target; // held weakly
        item.representedObject = target;
    }
    return item;
}

} // namespace quillane
