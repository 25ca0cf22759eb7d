// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Stored settings: the record of the installation as JSON, and a property list of switches of any type. What is
// accepted stays as it is when it is stored again.
#include "Require.hpp"

#include "core/preferences/FeatureOptions.hpp"
#include "core/preferences/InstallationPreferences.hpp"
#include "core/preferences/UserDefaults.hpp"
#include "core/propertylist/PropertyList.hpp"

#include <utility>

using namespace quillane::core;
using quillane::fuzz::require;

namespace {

/// Settings in memory.
class Settings final : public UserDefaults {
public:
    explicit Settings(PropertyListValue::Dictionary values) : values_(std::move(values)) {}

    [[nodiscard]] std::optional<PropertyListValue> object(std::string_view key) const override {
        const auto found = values_.find(std::string(key));
        return found == values_.end() ? std::nullopt : std::optional(found->second);
    }

    void setObject(std::string_view key, PropertyListValue value) override {
        values_.insert_or_assign(std::string(key), std::move(value));
    }

    void setObjects(const PropertyListValue::Dictionary& values) override {
        for (const auto& [key, value] : values) {
            setObject(key, value);
        }
    }

    void removeObject(std::string_view key) override { values_.erase(std::string(key)); }

private:
    PropertyListValue::Dictionary values_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (const auto installation = InstallationPreferences::fromJson({reinterpret_cast<const char*>(data), size})) {
        require(InstallationPreferences::fromJson(installation->toJson()) == installation);
    }
    const auto value = parsePropertyList(quillane::fuzz::bytesOf(data, size), std::size_t{1} << 20U);
    const auto* values = value ? value->as<PropertyListValue::Dictionary>() : nullptr;
    if (values != nullptr) {
        Settings settings(*values);
        const auto options = FeatureOptions::load(settings);
        options.save(settings);
        require(FeatureOptions::load(settings) == options);
        for (const auto& [key, ignored] : *values) {
            static_cast<void>(settings.stringArray(key));
        }
    }
    return 0;
}
