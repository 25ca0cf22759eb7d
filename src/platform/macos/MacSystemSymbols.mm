// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/MacSystemSymbols.hpp"

#include "platform/macos/MacStrings.hpp"

namespace quillane {

NSImage* menuSymbol(std::string_view name) {
    // No description: the row's title says what the row does.
    NSImage* symbol = [NSImage imageWithSystemSymbolName:nsString(name) accessibilityDescription:nil];
    NSImageSymbolConfiguration* size =
        [NSImageSymbolConfiguration configurationWithPointSize:[NSFont menuFontOfSize:0].pointSize
                                                        weight:NSFontWeightRegular
                                                         scale:NSImageSymbolScaleMedium];
    NSImage* image = [symbol imageWithSymbolConfiguration:size];
    [image setTemplate:YES]; // the property's name is a word of C++
    return image;
}

NSImage* menuApplicationIcon() {
    NSImage* icon = [NSApplication.sharedApplication.applicationIconImage copy];
    icon.size = NSMakeSize(16, 16);
    return icon;
}

} // namespace quillane
