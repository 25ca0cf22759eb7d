// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/ClipboardEntry.hpp"
#include "platform/MainQueue.hpp"
#include "platform/SerialQueue.hpp"

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace quillane {

/// The paths that a files entry refers to, as far as they are paths.
[[nodiscard]] std::vector<std::filesystem::path> referencedFiles(const core::ClipboardItems& items);

/// Whether the files of entries are still there, asked on a queue of their own. Main thread.
class EntryFiles {
public:
    enum class State {
        unknown, ///< has been asked
        present,
        folder, ///< present, and the only one is a folder
        gone,   ///< at least one
    };

    EntryFiles(MainQueue& mainQueue, SerialQueue& queue) : mainQueue_(mainQueue), queue_(queue) {}

    ~EntryFiles();
    EntryFiles(const EntryFiles&) = delete;
    EntryFiles& operator=(const EntryFiles&) = delete;

    [[nodiscard]] State state(const core::ClipboardEntry& entry);

    /// Asks anew from now on.
    void forget();

    std::function<void()> onReady; ///< one more state is known

private:
    /// Whether answers are still wanted. While a question holds the lock, everything that it refers to is there.
    struct Asking {
        std::mutex mutex;
        bool isOver = false;
    };

    void stopAsking();

    MainQueue& mainQueue_;
    SerialQueue& queue_;
    std::unordered_map<core::Uuid, State> states_;
    std::shared_ptr<Asking> asking_ = std::make_shared<Asking>(); // shared with the questions, which may take forever
};

} // namespace quillane
