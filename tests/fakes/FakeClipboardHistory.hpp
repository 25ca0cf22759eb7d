// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardPanel.hpp"
#include "fakes/FakeClipboardDesktop.hpp"

namespace quillane::fakes {

/// The clipboard history and the model of its panel on a faked desktop, for what draws them.
struct FakeClipboardHistory : FakeClipboardDesktop {
    explicit FakeClipboardHistory(core::Desktop desktop = core::Desktop::macOS) { platform.desktop = desktop; }

    ClipboardManager manager{platform, folder(), [this] { return now(); }};
    ClipboardPanel panel{manager, platform};
};

} // namespace quillane::fakes
