// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardPanel.hpp"
#include "fakes/FakeHotKeys.hpp"
#include "fakes/FakeKeyEvents.hpp"
#include "fakes/FakeMainQueue.hpp"
#include "fakes/FakePasteboard.hpp"
#include "fakes/FakePermissionService.hpp"
#include "fakes/FakeSecretStore.hpp"
#include "fakes/FakeSecureInput.hpp"
#include "fakes/FakeSerialQueue.hpp"
#include "fakes/FakeUserDefaults.hpp"
#include "fakes/FakeWorkspace.hpp"
#include "fakes/TemporaryFiles.hpp"

namespace quillane::fakes {

/// The clipboard history and the model of its panel on a faked desktop, for what draws them.
struct FakeClipboardHistory {
    TemporaryFiles files;
    FakeMainQueue queue;
    FakeUserDefaults userDefaults;
    FakeWorkspace workspace;
    FakePasteboard pasteboard;
    FakeHotKeys hotKeys{queue};
    FakeSecureInput secureInput;
    FakeSecretStore secrets;
    FakeSerialQueue vaultQueue;
    FakeKeyEvents keyEvents;
    FakePermissionService permissions;
    ClipboardManager manager{
        {.mainQueue = queue,
         .userDefaults = userDefaults,
         .workspace = workspace,
         .pasteboard = pasteboard,
         .hotKeys = hotKeys,
         .secureInput = secureInput,
         .secretStore = secrets,
         .vaultQueue = vaultQueue,
         .vaultFolder = files.folder() / "history",
         .now = [this] { return core::Date{7.8e8 + static_cast<double>(queue.now().count()) / 1e3}; }}};
    ClipboardPanel panel{manager,
                         {.mainQueue = queue,
                          .workspace = workspace,
                          .pasteboard = pasteboard,
                          .keyEvents = keyEvents,
                          .secureInput = secureInput,
                          .permissions = permissions}};
};

} // namespace quillane::fakes
