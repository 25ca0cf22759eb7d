// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardPanel.hpp"
#include "fakes/FakeClipboardDesktop.hpp"
#include "fakes/FakeKeyEvents.hpp"
#include "fakes/FakePermissionService.hpp"

namespace quillane::fakes {

/// The clipboard history and the model of its panel on a faked desktop, for what draws them.
struct FakeClipboardHistory : FakeClipboardDesktop {
    explicit FakeClipboardHistory(core::Desktop desktop = core::Desktop::macOS) : shownOn(desktop) {}

    core::Desktop shownOn;
    FakeKeyEvents keyEvents;
    FakePermissionService permissions;
    ClipboardManager manager{managerServices()};
    ClipboardPanel panel{manager,
                         {.desktop = shownOn,
                          .mainQueue = queue,
                          .workspace = workspace,
                          .pasteboard = pasteboard,
                          .keyEvents = keyEvents,
                          .secureInput = secureInput,
                          .permissions = permissions}};
};

} // namespace quillane::fakes
