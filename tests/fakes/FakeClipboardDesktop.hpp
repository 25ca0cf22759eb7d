// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardManager.hpp"
#include "fakes/FakeDesktop.hpp"
#include "support/TemporaryFolder.hpp"

#include <filesystem>
#include <memory>

namespace quillane::fakes {

/// A faked desktop with a folder for the clipboard history and a clock on the wall.
struct FakeClipboardDesktop : FakeDesktop {
    [[nodiscard]] std::filesystem::path folder() const { return files.path() / "Quillane" / "ClipboardHistory"; }

    [[nodiscard]] core::Date now() const {
        return {7.8e8 + clockShift + static_cast<double>(queue.now().count()) / 1e3};
    }

    [[nodiscard]] std::unique_ptr<ClipboardManager> makeManager() {
        return std::make_unique<ClipboardManager>(platform, folder(), [this] { return now(); });
    }

    double clockShift = 0; ///< seconds by which the clock on the wall was set
    live::TemporaryFolder files;
};

} // namespace quillane::fakes
