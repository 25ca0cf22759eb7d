// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/ApplicationIndex.hpp"

#include "platform/linux/applications/ApplicationIdentities.hpp"

#include <algorithm>
#include <array>

namespace quillane {

namespace {

/// A class in the spelling that Qt and GTK make of a program's name.
std::string classOfProgram(std::string program) {
    if (!program.empty() && program.front() >= 'a' && program.front() <= 'z') {
        program.front() = static_cast<char>(program.front() - 'a' + 'A');
    }
    return program;
}

/// Uses the first of these that the entry provides.
std::string ownIdentifier(const DesktopEntry& entry) {
    for (const auto* name : {&entry.windowClass, &entry.program, &entry.id}) {
        if (auto known = knownBundleIdentifier(*name)) {
            return *known;
        }
    }
    if (!entry.windowClass.empty()) {
        return entry.windowClass;
    }
    return entry.program.empty() ? entry.id : classOfProgram(entry.program);
}

} // namespace

ApplicationIndex::ApplicationIndex(std::span<const DesktopEntry> entries) {
    // Declared names take precedence over guesses, and an entry's name over its program, which may have many entries.
    constexpr std::array names{&DesktopEntry::windowClass, &DesktopEntry::id, &DesktopEntry::program};
    for (const auto name : names) {
        for (const auto& entry : entries) {
            if (!(entry.*name).empty()) {
                identifiers_.try_emplace(caseless(entry.*name), ownIdentifier(entry));
            }
        }
    }
    for (auto& [name, identifier] : identifiers_) { // two entries may be of one application
        if (const auto other = identifiers_.find(caseless(identifier)); other != identifiers_.end()) {
            identifier = std::string(other->second);
        }
    }
    for (const auto& entry : entries) {
        const auto identifier = identifierOf(ownIdentifier(entry));
        if (entry.isTerminal) {
            terminals_.insert(identifier);
        }
        if (entry.isShown && !entry.name.empty()) {
            show(entry, identifier);
        }
    }
    lengths_.clear();
}

/// An application may have further entries with longer names ("…-settings").
void ApplicationIndex::show(const DesktopEntry& entry, const std::string& identifier) {
    const auto [known, isNew] = lengths_.try_emplace(identifier, entry.id.size());
    if (isNew) {
        applications_.push_back({.bundleID = identifier, .name = entry.name});
    } else if (entry.id.size() < known->second) {
        known->second = entry.id.size();
        std::ranges::find(applications_, identifier, &KnownApplication::bundleID)->name = entry.name;
    }
}

const std::string* ApplicationIndex::find(std::string_view windowClass, std::string_view instance) const {
    for (const auto name : {windowClass, instance}) {
        if (const auto found = identifiers_.find(caseless(name)); found != identifiers_.end()) {
            return &found->second;
        }
    }
    return nullptr;
}

std::string ApplicationIndex::identifierOf(std::string_view windowClass, std::string_view instance) const {
    if (windowClass.empty()) {
        return {};
    }
    if (auto known = knownBundleIdentifier(windowClass)) {
        return *known;
    }
    const auto* found = find(windowClass, instance);
    return found != nullptr ? *found : std::string(windowClass);
}

bool ApplicationIndex::knows(std::string_view windowClass, std::string_view instance) const {
    return knownBundleIdentifier(windowClass) || find(windowClass, instance) != nullptr;
}

bool ApplicationIndex::isTerminal(std::string_view identifier) const {
    return terminals_.contains(identifier);
}

} // namespace quillane
