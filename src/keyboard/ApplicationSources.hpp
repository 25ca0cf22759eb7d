// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/ApplicationSources.hpp"
#include "core/keyboard/UserInput.hpp"
#include "core/support/Lifetime.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace quillane {

struct Platform;

/// Brings back the input source that was last used in an application, or its fixed one, when the application comes to
/// the front. Never while a key is down, and not for the program's own windows. Main thread.
class ApplicationSources {
public:
    /// `isSuspended`: the program is paused, or leaves the keyboard to a viewer of another computer.
    ApplicationSources(const Platform& platform, std::function<bool()> isSuspended);

    /// Another application has come to the front.
    void noteActivation();

    /// The source in use has changed, or the list of enabled ones.
    void noteChange();

    /// The user has pressed a key, clicked or scrolled: who types already is not interrupted by another source.
    void interrupt(core::UserInput input);

private:
    void restore(int attempt);
    void remember();
    [[nodiscard]] std::optional<std::string> front() const;
    [[nodiscard]] bool isAnyKeyDown() const;

    const Platform& platform_;
    std::function<bool()> isSuspended_;
    core::SourceMemory memory_;
    std::uint64_t current_ = 0; ///< number of the latest attempt; a step of another one is stale
    bool isWaiting_ = false;    ///< until the keys are up
    core::Lifetime lifetime_;
};

} // namespace quillane
