// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/EntryFiles.hpp"

#include <algorithm>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace quillane {

namespace {

std::vector<std::filesystem::path> pathsOf(const core::ClipboardItems& items, const core::FileFinder& findFile) {
    std::vector<std::filesystem::path> files;
    for (const auto& item : items) {
        for (const auto& representation : item) {
            const auto& bytes = *representation.data;
            if (auto file = findFile({reinterpret_cast<const char*>(bytes.data()), bytes.size()})) {
                files.push_back(std::move(*file));
            }
        }
    }
    return files;
}

/// Finds the files that can be found without the disk.
std::optional<std::filesystem::path> namedFile(std::string_view url) {
    return core::isFileReference(url) ? std::nullopt : core::referencedFile(url);
}

} // namespace

EntryFiles::Findings EntryFiles::examine(const core::ClipboardItems& items, const core::FileFinder& findFile) {
    auto files = pathsOf(items, findFile);
    std::size_t references = 0;
    for (const auto& item : items) {
        references += item.size();
    }
    std::error_code error;
    if (files.empty() || files.size() < references ||
        !std::ranges::all_of(files, [&](const auto& file) { return exists(file, error); })) {
        return {State::gone, std::move(files)};
    }
    const bool isFolder = files.size() == 1 && is_directory(files.front(), error);
    return {isFolder ? State::folder : State::present, std::move(files)};
}

EntryFiles::State EntryFiles::state(const core::ClipboardEntry& entry) {
    return findings(entry).state;
}

std::vector<std::filesystem::path> EntryFiles::paths(const core::ClipboardEntry& entry) {
    return findings(entry).paths;
}

const EntryFiles::Findings& EntryFiles::findings(const core::ClipboardEntry& entry) {
    const auto [found, isNew] = findings_.try_emplace(entry.id);
    if (isNew) {
        found->second.paths = pathsOf(*entry.items, namedFile);
        queue_.post([this, id = entry.id, items = entry.items, asking = asking_, findFile = findFile_] {
            const auto isOver = [&] {
                const std::lock_guard lock(asking->mutex);
                return asking->isOver;
            };
            if (isOver()) {
                return;
            }
            auto findings = examine(*items, findFile); // an unreachable server may delay this beyond the program's end
            const std::lock_guard lock(asking->mutex);
            if (asking->isOver) {
                return;
            }
            mainQueue_.post([this, id, asking, findings = std::move(findings)] {
                if (asking->isOver) { // changed by this thread only
                    return;
                }
                findings_[id] = findings;
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
    findings_.clear();
    stopAsking();
    asking_ = std::make_shared<Asking>();
}

void EntryFiles::stopAsking() {
    const std::lock_guard lock(asking_->mutex);
    asking_->isOver = true;
}

} // namespace quillane
