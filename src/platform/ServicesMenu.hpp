// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// The desktop's own way for other programs to offer what this one does with their selection. Main thread.
class ServicesMenu {
public:
    /// Takes the file URLs of a selection, in its order. What it returns is shown by the other program as an error.
    using Share = std::function<std::optional<std::string>(const std::vector<std::string>& urls)>;

    virtual ~ServicesMenu() = default;

    /// Answers from now on, instead of what was given before. An empty function ends it.
    virtual void provideShare(Share share) = 0;

    /// Whether the file manager has an entry that is made only when the user asks for it. None where nothing can be
    /// asked for, as on macOS, where the entry is the system's matter. Reads the disk.
    [[nodiscard]] virtual std::optional<bool> hasUserEntry() const { return std::nullopt; }

    /// Makes that entry under a title, which may replace the one before, or removes it. False when it cannot be done.
    virtual bool setUserEntry([[maybe_unused]] const std::optional<std::string>& title) { return false; }
};

} // namespace quillane
