// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "core/power/SleepAssertionClient.hpp"
#include "core/preferences/FeatureOptions.hpp"

#include <optional>
#include <set>
#include <vector>

namespace quillane::core {

/// Keeps the machine and its display awake while it is enabled. Either both assertions are held or none. A lost one is
/// taken again, once for each enabling; after that, or when it cannot be taken, enabling has failed. Main thread.
class SleepPrevention {
public:
    explicit SleepPrevention(SleepAssertionClient& client);

    /// Releases what is held.
    ~SleepPrevention() { releaseAll(); }

    SleepPrevention(const SleepPrevention&) = delete;
    SleepPrevention& operator=(const SleepPrevention&) = delete;

    /// Takes both assertions, or releases them. Repeating the value of the last call does nothing: after a failure,
    /// only disabling and enabling tries again.
    void setEnabled(bool enabled);

    /// Both assertions are held.
    [[nodiscard]] bool isActive() const { return assertions_.size() == allSleepAssertionKinds.size(); }

    /// Why the last enabling failed, or did not last.
    [[nodiscard]] const std::optional<SleepAssertionError>& error() const { return error_; }

private:
    void takeAgain(SleepAssertionID lost, SleepAssertionError reason);
    void releaseAll();

    SleepAssertionClient& client_;
    std::vector<SleepAssertionID> assertions_;     ///< in the order of creation, which is that of the kinds
    std::set<SleepAssertionKind> takenAgain_ = {}; ///< since the last enabling
    bool requested_ = false;
    std::optional<SleepAssertionError> error_;
    Subscription losses_;
};

/// The state of Keep Awake in words.
[[nodiscard]] LocalizedText keepAwakeStatus(const FeatureOptions& options, bool failed);

} // namespace quillane::core
