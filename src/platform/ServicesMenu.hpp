// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// The desktop's way to offer this program's service on other programs' selections. Main thread.
class ServicesMenu {
public:
    /// Receives the file URLs of a selection, in its order. The other program shows a returned text as an error.
    using Share = std::function<std::optional<std::string>(const std::vector<std::string>& urls)>;

    virtual ~ServicesMenu() = default;

    /// Handles requests from now on, in place of the previous handler. An empty function ends it.
    virtual void provideShare(Share share) = 0;

    /// Whether the file manager has the entry that is made only at the user's request. None where there is nothing to
    /// request, as on macOS, where the system manages the entry. Reads the disk.
    [[nodiscard]] virtual std::optional<bool> hasUserEntry() const { return std::nullopt; }

    /// Makes that entry under a title, which may replace an earlier one, or removes it. False on failure.
    virtual bool setUserEntry([[maybe_unused]] const std::optional<std::string>& title) { return false; }
};

} // namespace quillane
