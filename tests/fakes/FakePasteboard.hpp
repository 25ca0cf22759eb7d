// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/PasteboardTypes.hpp"
#include "core/support/Listeners.hpp"
#include "fakes/Journal.hpp"
#include "platform/Pasteboard.hpp"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quillane::fakes {

[[nodiscard]] inline std::vector<std::byte> bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

/// A pasteboard in memory. `copy` is what another application does; the rest is what the agent does.
class FakePasteboard final : public Pasteboard {
public:
    struct Item {
        std::vector<std::pair<std::string, std::string>> flavours; ///< type and bytes
        std::vector<std::string> emptyPromises;                    ///< types on offer that yield no data
    };

    void copy(std::vector<Item> items) {
        items_ = std::move(items);
        ownTypes_.clear();
        ++changeCount_;
        changes_.notify();
    }

    void copyText(std::string text) { copy({{{{std::string(core::PasteboardTypes::string), std::move(text)}}, {}}}); }

    /// Another application copies, and its contents are still to be fetched: `arrive` brings them.
    void copyUnfetched() { copy({}); }

    void arrive(std::string text) {
        fillText(std::move(text));
        changes_.notify();
    }

    /// The application that copied fills what it has emptied before: the change count stays.
    void fillText(std::string text) {
        items_ = {{{{std::string(core::PasteboardTypes::string), std::move(text)}}, {}}};
    }

    /// The system refuses what is written from now on.
    void refuseWrites() { refusesWrites_ = true; }

    /// Runs whenever data is read, as an application that copies meanwhile does.
    void onRead(std::function<void()> callback) { onRead_ = std::move(callback); }

    /// What the pasteboard as a whole offers under older names, until the next copy.
    void offerAsAWhole(std::vector<std::string> types) { ownTypes_ = std::move(types); }

    [[nodiscard]] std::vector<std::string> ownTypes() const override { return ownTypes_; }

    [[nodiscard]] const std::vector<Item>& items() const { return items_; }

    [[nodiscard]] int reads() const { return reads_; }

    /// The types whose text was asked for, in order.
    [[nodiscard]] const std::vector<std::string>& stringsRead() const { return stringsRead_; }

    [[nodiscard]] int clears() const { return clears_; }

    [[nodiscard]] const Interest& interest() const { return interest_; }

    /// Copies give notice from now on, as on a desktop that tells of them.
    void tellOfChanges() { tellsOfChanges_ = true; }

    core::Subscription onChanged(std::function<void()> callback) override {
        return tellsOfChanges_ ? changes_.subscribe(std::move(callback)) : core::Subscription();
    }

    [[nodiscard]] std::int64_t changeCount() const override { return changeCount_; }

    [[nodiscard]] std::vector<std::vector<std::string>> itemTypes() const override {
        std::vector<std::vector<std::string>> types;
        for (const auto& item : items_) {
            auto& offered = types.emplace_back();
            for (const auto& flavour : item.flavours) {
                offered.push_back(flavour.first);
            }
            offered.insert(offered.end(), item.emptyPromises.begin(), item.emptyPromises.end());
        }
        return types;
    }

    [[nodiscard]] std::optional<core::SharedBytes> data(std::size_t item, std::string_view type) const override {
        ++reads_;
        const auto* found = flavour(items_.at(item), type);
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
            if (const auto* found = flavour(item, type)) {
                return *found;
            }
        }
        return std::nullopt;
    }

    void clear() override {
        items_.clear();
        ++changeCount_;
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

    Journal* journal = nullptr; ///< none: nothing is written down

private:
    core::Listeners<> changes_;
    bool tellsOfChanges_ = false;

    static const std::string* flavour(const Item& item, std::string_view type) {
        const auto found = std::ranges::find(item.flavours, type, &std::pair<std::string, std::string>::first);
        return found != item.flavours.end() ? &found->second : nullptr;
    }

    std::vector<Item> items_;
    std::vector<std::string> ownTypes_;
    std::int64_t changeCount_ = 1;
    bool refusesWrites_ = false;
    int clears_ = 0;
    mutable int reads_ = 0;
    mutable std::vector<std::string> stringsRead_;
    mutable std::function<void()> onRead_;
    Interest interest_;
};

} // namespace quillane::fakes
