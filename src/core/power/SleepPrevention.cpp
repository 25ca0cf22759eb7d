// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/power/SleepPrevention.hpp"

#include "core/localization/Texts.hpp"

namespace quillane::core {

void SleepPrevention::setEnabled(bool enabled) {
    if (enabled == requested_) {
        return;
    }
    requested_ = enabled;
    error_.reset();
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
