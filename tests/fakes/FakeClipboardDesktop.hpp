// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardManager.hpp"
#include "fakes/FakeHotKeys.hpp"
#include "fakes/FakeMainQueue.hpp"
#include "fakes/FakePasteboard.hpp"
#include "fakes/FakeSecretStore.hpp"
#include "fakes/FakeSecureInput.hpp"
#include "fakes/FakeSerialQueue.hpp"
#include "fakes/FakeUserDefaults.hpp"
#include "fakes/FakeWorkspace.hpp"
#include "support/TemporaryFiles.hpp"

#include <filesystem>

namespace quillane::fakes {

/// What a clipboard history needs, faked.
struct FakeClipboardDesktop {
    [[nodiscard]] std::filesystem::path folder() const { return files.folder() / "Quillane" / "ClipboardHistory"; }

    [[nodiscard]] ClipboardServices managerServices() {
        return {
            .mainQueue = queue,
            .userDefaults = userDefaults,
            .workspace = workspace,
            .pasteboard = pasteboard,
            .hotKeys = hotKeys,
            .secureInput = secureInput,
            .secretStore = secrets,
            .vaultQueue = vaultQueue,
            .vaultFolder = folder(),
            .now = [this] { return core::Date{7.8e8 + clockShift + static_cast<double>(queue.now().count()) / 1e3}; }};
    }

    double clockShift = 0; ///< seconds by which the clock on the wall was set
    TemporaryFiles files;
    FakeMainQueue queue;
    FakeUserDefaults userDefaults;
    FakeWorkspace workspace{queue};
    FakePasteboard pasteboard;
    FakeHotKeys hotKeys{queue};
    FakeSecureInput secureInput;
    FakeSecretStore secrets;
    FakeSerialQueue vaultQueue;
};

} // namespace quillane::fakes
