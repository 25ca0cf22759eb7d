// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/shell/MacFilePanel.hpp"

#include "platform/macos/foundation/MacCallback.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#import <AppKit/AppKit.h>

#include <utility>

namespace quillane {

namespace {

void show(const FilePanel::Texts& texts, NSOpenPanel* panel) {
    panel.title = nsString(texts.title);
    panel.message = nsString(texts.message);
    panel.prompt = nsString(texts.prompt);
}

NSOpenPanel* openPanel(const FilePanel::Texts& texts) {
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    show(texts, panel);
    panel.canChooseFiles = YES;
    panel.canChooseDirectories = NO;
    panel.allowsMultipleSelection = NO;
    return panel;
}

} // namespace

struct MacFilePanel::State {
    NSOpenPanel* panel = nil; ///< the open one
};

MacFilePanel::MacFilePanel() : state_(std::make_shared<State>()) {}

MacFilePanel::~MacFilePanel() {
    @autoreleasepool {
        NSOpenPanel* panel = std::exchange(state_->panel, nil);
        state_.reset(); // so that the completion does nothing
        [panel cancel:nil];
    }
}

void MacFilePanel::chooseFile(const Texts& texts, Chosen chosen, Dropped) {
    @autoreleasepool {
        [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
        if (state_->panel) {
            [state_->panel makeKeyAndOrderFront:nil];
            return;
        }
        state_->panel = openPanel(texts);
        const std::weak_ptr<State> weak = state_;
        [state_->panel beginWithCompletionHandler:^(NSModalResponse response) {
          const auto state = weak.lock();
          if (!state) {
              return;
          }
          NSURL* url = std::exchange(state->panel, nil).URLs.firstObject;
          if (response == NSModalResponseOK && url.fileURL) {
              guarded([&] { chosen(std::filesystem::path(url.fileSystemRepresentation)); });
          }
        }];
    }
}

void MacFilePanel::setTexts(const Texts& texts) {
    @autoreleasepool {
        if (state_->panel) {
            show(texts, state_->panel);
        }
    }
}

} // namespace quillane
