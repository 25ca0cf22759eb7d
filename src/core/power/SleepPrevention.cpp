// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/power/SleepPrevention.hpp"

#include "core/localization/Texts.hpp"

#include <algorithm>

namespace quillane::core {

SleepPrevention::SleepPrevention(SleepAssertionClient& client)
    : client_(client),
      losses_(client.onLost([this](SleepAssertionID lost, SleepAssertionError reason) { takeAgain(lost, reason); })) {}

void SleepPrevention::setEnabled(bool enabled) {
    if (enabled == requested_) {
        return;
    }
    requested_ = enabled;
    error_.reset();
    takenAgain_.clear();
    if (!enabled) {
        releaseAll();
        return;
    }
    for (const auto kind : allSleepAssertionKinds) {
        const auto created = client_.create(kind);
        if (const auto* error = std::get_if<SleepAssertionError>(&created)) {
            error_ = *error;
            releaseAll();
            return;
        }
        assertions_.push_back(std::get<SleepAssertionID>(created));
    }
}

void SleepPrevention::takeAgain(SleepAssertionID lost, SleepAssertionError reason) {
    const auto place = std::ranges::find(assertions_, lost);
    if (place == assertions_.end()) {
        return;
    }
    const auto kind = allSleepAssertionKinds.at(static_cast<std::size_t>(place - assertions_.begin()));
    const std::variant<SleepAssertionID, SleepAssertionError> taken =
        takenAgain_.insert(kind).second ? client_.create(kind) : reason;
    if (const auto* assertion = std::get_if<SleepAssertionID>(&taken)) {
        *place = *assertion;
        return;
    }
    error_ = std::get<SleepAssertionError>(taken);
    assertions_.erase(place);
    releaseAll();
}

void SleepPrevention::releaseAll() {
    while (!assertions_.empty()) {
        client_.release(assertions_.back());
        assertions_.pop_back();
    }
}

LocalizedText keepAwakeStatus(const FeatureOptions& options, bool failed) {
    if (!options.keepAwake) {
        return texts::keepAwakeOff;
    }
    if (options.paused) {
        return texts::keepAwakePaused;
    }
    return failed ? texts::keepAwakeFailed : texts::keepAwakeOn;
}

} // namespace quillane::core
