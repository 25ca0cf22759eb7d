// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/preferences/UserDefaults.hpp"

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillane::core {

/// Which input source comes back with which application, as the user has set it up.
struct ApplicationSourceOptions {
    bool enabled = false;                     ///< at all
    std::map<std::string, std::string> fixed; ///< applications by identifier that always have the same source

    /// The stored settings. What is missing or mistyped has its initial value.
    [[nodiscard]] static ApplicationSourceOptions load(const UserDefaults& defaults);

    void save(UserDefaults& defaults) const;

    bool operator==(const ApplicationSourceOptions&) const = default;
};

/// The source that was last used in each application, forgotten with the program. Of many applications, those that were
/// used last.
class SourceMemory {
public:
    static constexpr std::size_t maximum = 200;

    void note(std::string_view application, std::string_view source);

    [[nodiscard]] std::optional<std::string> sourceOf(std::string_view application) const;

private:
    struct Entry {
        std::string application;
        std::string source;
    };

    std::vector<Entry> entries_; ///< the one that was noted last at the end
};

/// The source to select when an application comes to the front: its fixed one, or else the one that was last used in
/// it. None when that is in use already, is not among the enabled ones, or is not known.
[[nodiscard]] std::optional<std::string> sourceOnReturn(const ApplicationSourceOptions& options,
                                                        const SourceMemory& memory, std::string_view application,
                                                        std::string_view current, std::span<const std::string> enabled);

} // namespace quillane::core
