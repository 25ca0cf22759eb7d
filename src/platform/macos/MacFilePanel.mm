// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/MacFilePanel.hpp"

#include "platform/macos/MacStrings.hpp"

#import <AppKit/AppKit.h>

#include <utility>

namespace quillane {

struct MacFilePanel::State {
    NSOpenPanel* panel = nil; ///< the open one
};

MacFilePanel::MacFilePanel() : state_(std::make_shared<State>()) {}

MacFilePanel::~MacFilePanel() {
    NSOpenPanel* panel = std::exchange(state_->panel, nil);
    state_.reset(); // so that the completion finds nobody to tell
    [panel cancel:nil];
}

void MacFilePanel::chooseFile(const Texts& texts, Chosen chosen, Dropped) {
    [NSApp activateIgnoringOtherApps:YES];
    if (state_->panel) {
        [state_->panel makeKeyAndOrderFront:nil];
        return;
    }
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    panel.title = nsString(texts.title);
    panel.message = nsString(texts.message);
    panel.prompt = nsString(texts.prompt);
    panel.canChooseFiles = YES;
    panel.canChooseDirectories = NO;
    panel.allowsMultipleSelection = NO;
    state_->panel = panel;
    const std::weak_ptr<State> weak = state_;
    [panel beginWithCompletionHandler:^(NSModalResponse response) {
      const auto state = weak.lock();
      if (!state) {
          return;
      }
      NSURL* url = std::exchange(state->panel, nil).URLs.firstObject;
      if (response == NSModalResponseOK && url.fileURL) {
          chosen(std::filesystem::path(url.fileSystemRepresentation));
      }
    }];
}

} // namespace quillane
