// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/PasteboardTypes.hpp"
#include "core/support/Listeners.hpp"
#include "platform/Pasteboard.hpp"
#include "support/Journal.hpp"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillane::fakes {

[[nodiscard]] inline std::vector<std::byte> bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

/// A pasteboard in memory. `copy` is what another application does; the rest is what the agent does. As on macOS, a
/// type of the time before uniform type identifiers has a dynamic identifier ("dyn.…") among the types of an item and
/// its own name only among those of the pasteboard, files are copied as references by identifier, and the system may
/// keep the contents from the agent.
class FakePasteboard final : public Pasteboard {
public:
    struct Item {
        std::vector<std::pair<std::string, std::string>> flavours; ///< type and bytes
        std::vector<std::string> emptyPromises;                    ///< types on offer that yield no data
    };

    void copy(std::vector<Item> items) {
        items_ = std::move(items);
        isOwn_ = false;
        noteChange();
        changes_.notify();
    }

    /// As Finder copies files: by references that only the system can resolve, and only while the files are there.
    void copyFiles(const std::vector<std::filesystem::path>& files) {
        std::vector<Item> items;
        for (const auto& file : files) {
            items.push_back({{{std::string(core::pasteboardTypes::fileUrl), referenceTo(file)}}, {}});
        }
        copy(std::move(items));
    }

    /// A reference by identifier to a file. It follows the file when `move` moves it.
    [[nodiscard]] std::string referenceTo(const std::filesystem::path& file) {
        auto url = "file:///.file/id=6571367." + std::to_string(2'773'272 + references_->size());
        references_->emplace(url, file);
        return url;
    }

    /// The file has another path now, and its references lead there.
    void move(const std::filesystem::path& file, const std::filesystem::path& path) {
        std::filesystem::rename(file, path);
        for (auto& [url, target] : *references_) {
            target = target == file ? path : target;
        }
    }

    /// What the system lets the agent read of other applications' contents. With `asked` the user answers once for each
    /// change, as `answer` says.
    void setAccess(PasteboardAccess access, bool answer = true) {
        access_ = access;
        answer_ = answer;
        answered_.reset();
    }

    /// How often the user was asked for access.
    [[nodiscard]] int timesAsked() const { return timesAsked_; }

    void copyText(std::string text) { copy({{{{std::string(core::pasteboardTypes::string), std::move(text)}}, {}}}); }

    /// Another application copies, and its contents are still to be fetched: `arrive` brings them.
    void copyUnfetched() { copy({}); }

    void arrive(std::string text) {
        fillText(std::move(text));
        changes_.notify();
    }

    /// The application that copied fills what it has emptied before: the change count stays.
    void fillText(std::string text) {
        items_ = {{{{std::string(core::pasteboardTypes::string), std::move(text)}}, {}}};
    }

    /// Who was in front at the next copies, on a desktop that can tell.
    void setSource(std::optional<PasteboardSource> source) { source_ = std::move(source); }

    [[nodiscard]] std::optional<PasteboardSource> source() const override { return source_; }

    /// The system refuses writes from now on.
    void refuseWrites() { refusesWrites_ = true; }

    /// Runs whenever data is read, like an application that copies meanwhile.
    void onRead(std::function<void()> callback) { onRead_ = std::move(callback); }

    [[nodiscard]] std::vector<std::string> ownTypes() const override {
        std::vector<std::string> types;
        for (const auto& item : items_) {
            for (const auto& type : offeredBy(item)) {
                types.push_back(type);
                if (const auto name = typeOfItem(type); name != type) {
                    types.push_back(name);
                }
            }
        }
        return types;
    }

    [[nodiscard]] PasteboardAccess access() const override { return access_; }

    [[nodiscard]] core::FileFinder fileFinder() const override {
        return [references = references_](std::string_view url) -> std::optional<std::filesystem::path> {
            if (!core::isFileReference(url)) {
                return core::referencedFile(url);
            }
            const auto found = references->find(url);
            return found != references->end() && exists(found->second) ? std::optional(found->second) : std::nullopt;
        };
    }

    [[nodiscard]] const std::vector<Item>& items() const { return items_; }

    [[nodiscard]] int reads() const { return reads_; }

    /// The types whose text was requested, in order.
    [[nodiscard]] const std::vector<std::string>& stringsRead() const { return stringsRead_; }

    [[nodiscard]] int clears() const { return clears_; }

    [[nodiscard]] const Interest& interest() const { return interest_; }

    /// Copies are announced from now on, as on a desktop that announces them.
    void announceChanges() { announcesChanges_ = true; }

    core::Subscription onChanged(std::function<void()> callback) override {
        return announcesChanges_ ? changes_.subscribe(std::move(callback)) : core::Subscription();
    }

    [[nodiscard]] std::int64_t changeCount() const override { return changeCount_; }

    [[nodiscard]] std::vector<std::vector<std::string>> itemTypes() const override {
        std::vector<std::vector<std::string>> types;
        for (const auto& item : items_) {
            types.push_back(offeredBy(item));
            std::ranges::transform(types.back(), types.back().begin(), typeOfItem);
        }
        return types;
    }

    [[nodiscard]] std::optional<core::SharedBytes> data(std::size_t item, std::string_view type) const override {
        ++reads_;
        const auto* found = mayRead() ? flavour(items_.at(item), type) : nullptr;
        std::optional<core::SharedBytes> result;
        if (found) {
            result = bytesOf(*found);
        }
        if (const auto callback = onRead_) { // a copy, as it may replace itself
            callback();
        }
        return result;
    }

    [[nodiscard]] std::optional<std::string> string(std::string_view type) const override {
        stringsRead_.emplace_back(type);
        for (const auto& item : items_) {
            if (const auto* found = mayRead() ? flavour(item, type) : nullptr) {
                return *found;
            }
        }
        return std::nullopt;
    }

    void clear() override {
        items_.clear();
        isOwn_ = true;
        noteChange();
        ++clears_;
    }

    bool setString(std::string_view type, std::string_view text) override {
        if (!refusesWrites_) {
            items_ = {{{{std::string(type), std::string(text)}}, {}}};
        }
        return !refusesWrites_;
    }

    bool write(std::vector<core::PasteboardItem> items) override {
        if (refusesWrites_ || items.empty()) {
            return false; // writeObjects: of nothing fails
        }
        for (const auto& item : items) {
            auto& written = items_.emplace_back();
            for (const auto& representation : item.representations) {
                const auto* data = reinterpret_cast<const char*>(representation.data->data());
                written.flavours.emplace_back(representation.type, std::string(data, representation.data->size()));
            }
            written.flavours.insert(written.flavours.end(), item.strings.begin(), item.strings.end());
        }
        return true;
    }

    void setInterest(Interest interest) override {
        note(journal, interest ? "setInterest" : "setInterest to none");
        interest_ = std::move(interest);
    }

    Journal* journal = nullptr; ///< none: nothing is recorded

private:
    core::Listeners<> changes_;
    bool announcesChanges_ = false;

    void noteChange() {
        ++changeCount_;
        answered_.reset();
    }

    /// What the agent has written itself it may always read.
    bool mayRead() const {
        if (!isOwn_ && access_ == PasteboardAccess::asked && !answered_) {
            answered_ = answer_;
            ++timesAsked_;
        }
        return isOwn_ || access_ == PasteboardAccess::allowed || (access_ == PasteboardAccess::asked && *answered_);
    }

    static std::vector<std::string> offeredBy(const Item& item) {
        std::vector<std::string> types;
        for (const auto& flavour : item.flavours) {
            types.push_back(flavour.first);
        }
        types.insert(types.end(), item.emptyPromises.begin(), item.emptyPromises.end());
        return types;
    }

    /// The name of a type among those of an item.
    static std::string typeOfItem(const std::string& type) {
        const auto isUniform = [](char c) {
            return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '.';
        };
        if (std::ranges::all_of(type, isUniform)) {
            return type;
        }
        std::string dynamic = "dyn.ah62d4rv4";
        for (const char c : type) { // other letters than the system's, and as unreadable
            dynamic += {static_cast<char>('a' + (static_cast<unsigned char>(c) >> 4U)),
                        static_cast<char>('a' + (static_cast<unsigned char>(c) & 15U))};
        }
        return dynamic;
    }

    static const std::string* flavour(const Item& item, std::string_view type) {
        const auto found = std::ranges::find_if(
            item.flavours, [&](const auto& one) { return one.first == type || typeOfItem(one.first) == type; });
        return found != item.flavours.end() ? &found->second : nullptr;
    }

    std::vector<Item> items_;
    std::shared_ptr<std::map<std::string, std::filesystem::path, std::less<>>> references_ = // shared with finders
        std::make_shared<std::map<std::string, std::filesystem::path, std::less<>>>();
    PasteboardAccess access_ = PasteboardAccess::allowed;
    bool answer_ = true;                   ///< of a user who is asked
    bool isOwn_ = true;                    ///< the agent has written the contents
    mutable std::optional<bool> answered_; ///< for the contents of now
    mutable int timesAsked_ = 0;
    std::int64_t changeCount_ = 1;
    std::optional<PasteboardSource> source_;
    bool refusesWrites_ = false;
    int clears_ = 0;
    mutable int reads_ = 0;
    mutable std::vector<std::string> stringsRead_;
    mutable std::function<void()> onRead_;
    Interest interest_;
};

} // namespace quillane::fakes
