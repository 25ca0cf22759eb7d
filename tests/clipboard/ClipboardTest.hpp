// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardManager.hpp"
#include "core/clipboard/ClipboardVault.hpp"
#include "core/clipboard/VaultKey.hpp"
#include "fakes/FakeClipboardDesktop.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillane::testing {

/// A clipboard history on fakes, with an editor in front.
class ClipboardTest : public ::testing::Test, protected fakes::FakeClipboardDesktop {
protected:
    ClipboardTest() {
        core::ClipboardOptions options;
        options.enabled = true;
        userDefaults.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(options));
        workspace.activate(workspace.open("com.example.editor", "Editor"));
    }

    /// Makes a manager, in place of the one before.
    void make() {
        manager_.reset();
        manager_ = makeManager();
    }

    /// Starts a new manager and loads its history.
    ClipboardManager& start() {
        make();
        manager_->start();
        settle();
        return *manager_;
    }

    void settle() {
        queue.runPosted();
        vaultQueue.wait();
        queue.runPosted();
    }

    /// Time passes, and the disk keeps up.
    void pass(std::chrono::milliseconds time) {
        queue.advance(time);
        settle();
    }

    void copy(const std::string& text) {
        pasteboard.copyText(text);
        pass(std::chrono::milliseconds(500));
    }

    [[nodiscard]] std::vector<std::string> recorded() const {
        std::vector<std::string> all;
        for (const auto& entry : manager_->history().entries()) {
            all.push_back(*entry.text);
        }
        return all;
    }

    /// What another process would load.
    [[nodiscard]] std::vector<std::string> stored() {
        auto key = core::obtainVaultKey(secretStore);
        auto loaded = core::ClipboardVault::open(folder(), std::move(*key))->load();
        std::vector<std::string> all;
        for (const auto& entry : loaded.value()) {
            all.push_back(*entry.text);
        }
        return all;
    }

    /// Whether nothing of a history is in its folder.
    [[nodiscard]] bool isErased() const { return !core::ClipboardVault::hasFiles(folder()).value_or(true); }

    void setOption(bool core::ClipboardOptions::*option, bool value) {
        auto options = manager_->options();
        options.*option = value;
        manager_->setOptions(options);
        settle();
    }

    std::unique_ptr<ClipboardManager> manager_;
};

} // namespace quillane::testing
