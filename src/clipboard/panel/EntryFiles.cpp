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
        queue_.post([this, id = entry.id, items = entry.items, current = std::weak_ptr(current_), &main = mainQueue_] {
            if (current.expired()) {
                return;
            }
            main.post([this, id, current, state = examine(*items)] {
                if (current.expired()) {
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

void EntryFiles::forget() {
    states_.clear();
    current_ = std::make_shared<int>();
}

} // namespace quillane
