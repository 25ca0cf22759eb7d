// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardManager.hpp"
#include "core/clipboard/ClipboardKey.hpp"
#include "core/clipboard/ClipboardVault.hpp"
#include "fakes/FakeHotKeys.hpp"
#include "fakes/FakeMainQueue.hpp"
#include "fakes/FakePasteboard.hpp"
#include "fakes/FakeSecretStore.hpp"
#include "fakes/FakeSecureInput.hpp"
#include "fakes/FakeSerialQueue.hpp"
#include "fakes/FakeUserDefaults.hpp"
#include "fakes/FakeWorkspace.hpp"
#include "fakes/TemporaryFiles.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillane::testing {

/// A clipboard history on fakes, beside an editor that is in front.
class ClipboardTest : public ::testing::Test {
protected:
    ClipboardTest() {
        core::ClipboardOptions options;
        options.enabled = true;
        userDefaults_.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(options));
        workspace_.activate(workspace_.open("com.example.editor", "Editor"));
    }

    [[nodiscard]] std::filesystem::path folder() const { return files_.folder() / "Quillane" / "ClipboardHistory"; }

    /// Makes a manager, in place of the one before.
    void make() {
        manager_.reset();
        manager_ = std::make_unique<ClipboardManager>(
            ClipboardServices{.mainQueue = queue_,
                              .userDefaults = userDefaults_,
                              .workspace = workspace_,
                              .pasteboard = pasteboard_,
                              .hotKeys = hotKeys_,
                              .secureInput = secureInput_,
                              .secretStore = secrets_,
                              .vaultQueue = vaultQueue_,
                              .vaultFolder = folder(),
                              .now = [this] { return core::Date{static_cast<double>(queue_.now().count()) / 1e3}; }});
    }

    /// Starts a new manager and loads its history.
    ClipboardManager& start() {
        make();
        manager_->start();
        settle();
        return *manager_;
    }

    void settle() {
        queue_.runPosted();
        vaultQueue_.wait();
        queue_.runPosted();
    }

    /// Time goes by, and the disk keeps up.
    void pass(std::chrono::milliseconds time) {
        queue_.advance(time);
        settle();
    }

    void copy(const std::string& text) {
        pasteboard_.copyText(text);
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
    [[nodiscard]] std::vector<std::string> stored() const {
        auto key = core::obtainClipboardKey(secrets_);
        auto loaded = core::ClipboardVault::open(folder(), std::move(*key))->load();
        std::vector<std::string> all;
        for (const auto& entry : loaded.value()) {
            all.push_back(*entry.text);
        }
        return all;
    }

    void setOption(bool core::ClipboardOptions::*option, bool value) {
        auto options = manager_->options();
        options.*option = value;
        manager_->setOptions(options);
        settle();
    }

    fakes::TemporaryFiles files_;
    fakes::FakeMainQueue queue_;
    fakes::FakeUserDefaults userDefaults_;
    fakes::FakeWorkspace workspace_;
    fakes::FakePasteboard pasteboard_;
    fakes::FakeHotKeys hotKeys_{queue_};
    fakes::FakeSecureInput secureInput_;
    mutable fakes::FakeSecretStore secrets_;
    fakes::FakeSerialQueue vaultQueue_;
    std::unique_ptr<ClipboardManager> manager_;
};

} // namespace quillane::testing
