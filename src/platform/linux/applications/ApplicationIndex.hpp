// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ApplicationCatalog.hpp"
#include "platform/linux/applications/DesktopEntries.hpp"

#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillane {

/// Which application a window belongs to. A desktop entry may declare the class of its windows; if it does not,
/// programs name their windows after the entry or after themselves. Comparison ignores the case of letters, so each
/// application has one identifier whatever the names of its windows and entries, and identifiers can be compared
/// exactly everywhere else.
class ApplicationIndex {
public:
    ApplicationIndex() = default;
    explicit ApplicationIndex(std::span<const DesktopEntry> entries);

    /// The identifier of the application with these two strings of WM_CLASS (ICCCM 4.1.2.5). An unknown class is its
    /// own identifier, so that two applications always differ; empty when there is no class.
    [[nodiscard]] std::string identifierOf(std::string_view windowClass, std::string_view instance = {}) const;

    /// Whether an entry or the agent's own table knows the application.
    [[nodiscard]] bool knows(std::string_view windowClass, std::string_view instance = {}) const;

    /// Whether an entry calls the application of that identifier a terminal.
    [[nodiscard]] bool isTerminal(std::string_view identifier) const;

    /// The applications that menus show, each once.
    [[nodiscard]] const std::vector<KnownApplication>& applications() const { return applications_; }

private:
    void show(const DesktopEntry& entry, const std::string& identifier);
    [[nodiscard]] const std::string* find(std::string_view windowClass, std::string_view instance) const;

    std::map<std::string, std::string, std::less<>> identifiers_; ///< by caseless names
    std::set<std::string, std::less<>> terminals_;                ///< identifiers
    std::vector<KnownApplication> applications_;
    std::map<std::string, std::size_t> lengths_; ///< length of the name of the entry that an application is shown by
};

} // namespace quillane
