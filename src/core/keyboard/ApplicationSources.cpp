// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/ApplicationSources.hpp"

#include <algorithm>

namespace quillane::core {

namespace {

/// Boolean.
constexpr std::string_view enabledKey = "ApplicationSourcesEnabled";
/// Dictionary: identifiers of input sources by those of applications.
constexpr std::string_view fixedKey = "ApplicationSourcesFixed";

} // namespace

ApplicationSourceOptions ApplicationSourceOptions::load(const UserDefaults& defaults) {
    ApplicationSourceOptions options;
    options.enabled = defaults.boolean(enabledKey).value_or(options.enabled);
    const auto stored = defaults.object(fixedKey);
    const auto* entries = stored ? stored->as<PropertyListValue::Dictionary>() : nullptr;
    if (entries != nullptr) {
        for (const auto& [application, value] : *entries) {
            if (const auto* source = value.as<std::string>()) {
                options.fixed.emplace(application, *source);
            }
        }
    }
    return options;
}

void ApplicationSourceOptions::save(UserDefaults& defaults) const {
    PropertyListValue::Dictionary entries;
    for (const auto& [application, source] : fixed) {
        entries.emplace(application, PropertyListValue(source));
    }
    defaults.setObjects({{std::string(enabledKey), PropertyListValue(enabled)},
                         {std::string(fixedKey), PropertyListValue(std::move(entries))}});
}

void SourceMemory::note(std::string_view application, std::string_view source) {
    std::erase_if(entries_, [&](const Entry& entry) { return entry.application == application; });
    if (entries_.size() == maximum) {
        entries_.erase(entries_.begin());
    }
    entries_.push_back({std::string(application), std::string(source)});
}

std::optional<std::string> SourceMemory::sourceOf(std::string_view application) const {
    const auto found = std::ranges::find(entries_, application, &Entry::application);
    return found != entries_.end() ? std::optional(found->source) : std::nullopt;
}

std::optional<std::string> sourceOnReturn(const ApplicationSourceOptions& options, const SourceMemory& memory,
                                          std::string_view application, std::string_view current,
                                          std::span<const std::string> enabled) {
    if (!options.enabled) {
        return std::nullopt;
    }
    const auto fixed = options.fixed.find(std::string(application));
    auto wanted = fixed != options.fixed.end() ? std::optional(fixed->second) : memory.sourceOf(application);
    const bool isChange = wanted && *wanted != current && std::ranges::find(enabled, *wanted) != enabled.end();
    return isChange ? std::move(wanted) : std::nullopt;
}

} // namespace quillane::core
