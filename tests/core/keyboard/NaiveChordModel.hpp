// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quillane::core::naive {

/// The keys that are down, as the rules name them.
struct Keys {
    bool control = false;
    bool leftShift = false;
    bool rightShift = false;
    bool foreign = false;
};

/// A second, slow model of a chord. It keeps every state since nothing was held, and judges the whole sequence when
/// everything has been released. It shares no code with the machine that it checks.
class Story {
public:
    /// "RTL", "LTR" or nothing.
    std::optional<std::string_view> change(const Keys& keys);

    void cancel();
    void reset();

private:
    [[nodiscard]] std::optional<std::string_view> verdict() const;

    std::vector<Keys> states_;
    bool spoiled_ = false;
};

/// The rules that turn raw flags into the keys of each chord, bit by bit.
[[nodiscard]] Keys controlChordKeys(std::uint64_t raw);
[[nodiscard]] Keys rightOptionChordKeys(std::uint64_t raw);
[[nodiscard]] Keys languageChordKeys(std::uint64_t raw);
[[nodiscard]] Keys retypingChordKeys(std::uint64_t raw);

} // namespace quillane::core::naive
