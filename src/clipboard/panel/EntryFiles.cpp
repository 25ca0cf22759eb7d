// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/EntryFiles.hpp"

#include "core/clipboard/FileReference.hpp"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

namespace quillane {

namespace {

EntryFiles::State examine(const core::ClipboardItems& items) {
    const auto files = referencedFiles(items);
    std::size_t references = 0;
    for (const auto& item : items) {
        references += item.size();
    }
    std::error_code error;
    if (files.empty() || files.size() < references ||
        !std::ranges::all_of(files, [&](const auto& file) { return exists(file, error); })) {
        return EntryFiles::State::gone;
    }
    return files.size() == 1 && is_directory(files.front(), error) ? EntryFiles::State::folder
                                                                   : EntryFiles::State::present;
}

} // namespace

std::vector<std::filesystem::path> referencedFiles(const core::ClipboardItems& items) {
    std::vector<std::filesystem::path> files;
    for (const auto& item : items) {
        for (const auto& representation : item) {
            const auto& bytes = *representation.data;
            if (auto file = core::referencedFile({reinterpret_cast<const char*>(bytes.data()), bytes.size()})) {
                files.push_back(std::move(*file));
            }
        }
    }
    return files;
}

EntryFiles::State EntryFiles::state(const core::ClipboardEntry& entry) {
    const auto [found, isNew] = states_.try_emplace(entry.id, State::unknown);
    if (isNew) {
        queue_.post([this, id = entry.id, items = entry.items, asking = asking_] {
            const auto isOver = [&] {
                const std::lock_guard lock(asking->mutex);
                return asking->isOver;
            };
            if (isOver()) {
                return;
            }
            const auto state = examine(*items); // a server that is away may hold this up until after the program's end
            const std::lock_guard lock(asking->mutex);
            if (asking->isOver) {
                return;
            }
            mainQueue_.post([this, id, asking, state] {
                if (asking->isOver) { // only this thread changes it
                    return;
                }
                states_[id] = state;
                if (onReady) {
                    onReady();
                }
            });
        });
    }
    return found->second;
}

EntryFiles::~EntryFiles() {
    stopAsking();
}

void EntryFiles::forget() {
    states_.clear();
    stopAsking();
    asking_ = std::make_shared<Asking>();
}

void EntryFiles::stopAsking() {
    const std::lock_guard lock(asking_->mutex);
    asking_->isOver = true;
}

} // namespace quillane
