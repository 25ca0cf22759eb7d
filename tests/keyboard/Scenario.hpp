// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "keyboard/MonitoredDesktop.hpp"

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillane::testing {

/// A long interaction in plain text: one command a line, as scenarios/README.md describes them.
class Scenario {
public:
    /// Runs every line of the file, and the check at its end. Stops at the first failure. Returns what went wrong, with
    /// the line, or an empty text.
    [[nodiscard]] static std::string run(const std::filesystem::path& file);

private:
    using Words = std::span<const std::string>;

    /// What went wrong in this command, or an empty text.
    [[nodiscard]] std::string carryOut(const std::string& command, Words words);

    [[nodiscard]] std::string expect(Words words);
    [[nodiscard]] std::string setOption(Words words);

    /// Presses or releases a key or a modifier.
    void move(const std::string& key, bool press);

    /// What the keys have typed since the last time: letters of temporary English, and a dot for any other.
    [[nodiscard]] std::string takeText();

    MonitoredDesktop world_;
    std::size_t read_ = 0; ///< events that takeText has read
};

} // namespace quillane::testing
