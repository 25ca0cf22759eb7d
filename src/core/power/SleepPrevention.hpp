// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "core/power/SleepAssertionClient.hpp"
#include "core/preferences/FeatureOptions.hpp"

#include <optional>
#include <vector>

namespace quillane::core {

/// Keeps the machine and its display awake while it is enabled. Either both assertions are held or none. Main thread.
class SleepPrevention {
public:
    explicit SleepPrevention(SleepAssertionClient& client) : client_(client) {}

    /// Releases what is held.
    ~SleepPrevention() { releaseAll(); }

    SleepPrevention(const SleepPrevention&) = delete;
    SleepPrevention& operator=(const SleepPrevention&) = delete;

    /// Asks for both assertions, or releases them. The value of the last call again does nothing: after a failure only
    /// disabling and enabling tries anew.
    void setEnabled(bool enabled);

    /// Both assertions are held.
    [[nodiscard]] bool isActive() const { return assertions_.size() == allSleepAssertionKinds.size(); }

    /// Why the last enabling failed.
    [[nodiscard]] const std::optional<SleepAssertionError>& error() const { return error_; }

private:
    void releaseAll();

    SleepAssertionClient& client_;
    std::vector<SleepAssertionID> assertions_; ///< in the order of creation
    bool requested_ = false;
    std::optional<SleepAssertionError> error_;
};

/// What Keep Awake says about itself.
[[nodiscard]] LocalizedText keepAwakeStatus(const FeatureOptions& options, bool failed);

} // namespace quillane::core
