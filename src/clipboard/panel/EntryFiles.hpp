// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/ClipboardEntry.hpp"
#include "core/clipboard/FileReference.hpp"
#include "platform/MainQueue.hpp"
#include "platform/SerialQueue.hpp"

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillane {

/// The files of entries and whether they still exist, checked on a queue of their own. Main thread.
class EntryFiles {
public:
    enum class State {
        unknown, ///< has been requested
        present,
        folder, ///< present, and the only one is a folder
        gone,   ///< at least one
    };

    EntryFiles(MainQueue& mainQueue, SerialQueue& queue, core::FileFinder findFile)
        : mainQueue_(mainQueue), queue_(queue), findFile_(std::move(findFile)) {}

    ~EntryFiles();
    EntryFiles(const EntryFiles&) = delete;
    EntryFiles& operator=(const EntryFiles&) = delete;

    [[nodiscard]] State state(const core::ClipboardEntry& entry);

    /// The known paths of an entry's files. Paths of references by identifier become known with the state.
    [[nodiscard]] std::vector<std::filesystem::path> paths(const core::ClipboardEntry& entry);

    /// Forgets the answers, so that files are checked again.
    void forget();

    std::function<void()> onReady; ///< one more state is known

private:
    /// Whether answers are still wanted. While a check holds the lock, everything that it refers to exists.
    struct Asking {
        std::mutex mutex;
        bool isOver = false;
    };

    /// What is known about an entry.
    struct Findings {
        State state = State::unknown;
        std::vector<std::filesystem::path> paths;
    };

    [[nodiscard]] static Findings examine(const core::ClipboardItems& items, const core::FileFinder& findFile);
    [[nodiscard]] const Findings& findings(const core::ClipboardEntry& entry);
    void stopAsking();

    MainQueue& mainQueue_;
    SerialQueue& queue_;
    core::FileFinder findFile_;
    std::unordered_map<core::Uuid, Findings> findings_;
    std::shared_ptr<Asking> asking_ = std::make_shared<Asking>(); // shared with checks, which may never end
};

} // namespace quillane
