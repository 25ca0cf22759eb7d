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

/// Which application a window belongs to. A desktop entry may tell the class of its windows; if it does not, programs
/// name their windows after the entry or after themselves. Letters are compared in any case, so each application has
/// one identifier whatever its windows and entries are called, and identifiers can be compared exactly everywhere else.
class ApplicationIndex {
public:
    ApplicationIndex() = default;
    explicit ApplicationIndex(std::span<const DesktopEntry> entries);

    /// The identifier of the application with these two strings of WM_CLASS (ICCCM 4.1.2.5). A class that nothing is
    /// known of is its own identifier, so that two applications always differ; empty when there is no class.
    [[nodiscard]] std::string identifierOf(std::string_view windowClass, std::string_view instance = {}) const;

    /// Whether an entry or the agent's own table knows the application.
    [[nodiscard]] bool knows(std::string_view windowClass, std::string_view instance = {}) const;

    /// Whether an entry calls the application of that identifier a terminal.
    [[nodiscard]] bool isTerminal(std::string_view identifier) const;

    /// What menus show, each application once.
    [[nodiscard]] const std::vector<KnownApplication>& applications() const { return applications_; }

private:
    void show(const DesktopEntry& entry, const std::string& identifier);
    [[nodiscard]] const std::string* find(std::string_view windowClass, std::string_view instance) const;

    std::map<std::string, std::string, std::less<>> identifiers_; ///< by caseless names
    std::set<std::string, std::less<>> terminals_;                ///< identifiers
    std::vector<KnownApplication> applications_;
    std::map<std::string, std::size_t> lengths_; ///< of the entry's own name that an application is shown by
};

} // namespace quillane
