// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/preferences/UserDefaults.hpp"
#include "support/Journal.hpp"

#include <map>
#include <string>
#include <utility>

namespace quillane::fakes {

/// Settings in memory. Counts the writes that a file would have seen at once.
class FakeUserDefaults final : public core::UserDefaults {
public:
    using Value = core::PropertyListValue;

    FakeUserDefaults() = default;

    explicit FakeUserDefaults(Value::Dictionary initial) : values(std::move(initial)) {}

    [[nodiscard]] std::optional<Value> object(std::string_view key) const override {
        if (journal != nullptr) {
            journal->note("read " + std::string(key));
        }
        const auto found = values.find(std::string(key));
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    void setObject(std::string_view key, Value value) override { setObjects({{std::string(key), std::move(value)}}); }

    void setObjects(const Value::Dictionary& changes) override {
        auto changed = values;
        for (const auto& [key, value] : changes) {
            changed.insert_or_assign(key, value);
        }
        store(std::move(changed));
    }

    void removeObject(std::string_view key) override {
        auto changed = values;
        changed.erase(std::string(key));
        store(std::move(changed));
    }

    void note(std::string_view key, Value value) override {
        values.insert_or_assign(std::string(key), std::move(value));
    }

    Journal* journal = nullptr; ///< none: nothing is recorded
    Value::Dictionary values;   ///< what is stored; tests may put anything there
    int writes = 0;             ///< calls that changed something

private:
    void store(Value::Dictionary changed) {
        if (changed != values) {
            values = std::move(changed);
            ++writes;
        }
    }
};

} // namespace quillane::fakes
