// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/SecretStore.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillane::fakes {

/// A store of secrets in memory.
class FakeSecretStore final : public core::SecretStore {
public:
    struct Item {
        std::string label;
        std::vector<std::byte> secret;
    };

    /// Every call fails with this status from now on; `success` ends that.
    void failWith(core::SecretStatus status) { failure_ = status; }

    /// Adding fails with this status from now on.
    void failAddingWith(core::SecretStatus status) { addFailure_ = status; }

    void put(const core::SecretName& name, Item item) { items_[{name.service, name.account}] = std::move(item); }

    [[nodiscard]] std::optional<Item> item(const core::SecretName& name) const {
        const auto found = items_.find({name.service, name.account});
        return found != items_.end() ? std::optional(found->second) : std::nullopt;
    }

    [[nodiscard]] std::size_t count() const { return items_.size(); }

    /// How often an item was looked for.
    [[nodiscard]] int searches() const { return searches_; }

    [[nodiscard]] std::variant<core::SecretBytes, core::SecretStatus> find(const core::SecretName& name) override {
        ++searches_;
        if (failure_ != core::SecretStatus::success) {
            return failure_;
        }
        const auto found = item(name);
        if (!found) {
            return core::SecretStatus::itemNotFound;
        }
        return core::SecretBytes(found->secret);
    }

    [[nodiscard]] core::SecretStatus add(const core::SecretName& name, const std::string& label,
                                         std::span<const std::byte> secret) override {
        for (const auto status : {failure_, addFailure_}) {
            if (status != core::SecretStatus::success) {
                return status;
            }
        }
        if (item(name)) {
            return core::SecretStatus::duplicateItem;
        }
        put(name, {label, {secret.begin(), secret.end()}});
        return core::SecretStatus::success;
    }

private:
    std::map<std::pair<std::string, std::string>, Item> items_;
    core::SecretStatus failure_ = core::SecretStatus::success;
    core::SecretStatus addFailure_ = core::SecretStatus::success;
    int searches_ = 0;
};

} // namespace quillane::fakes
