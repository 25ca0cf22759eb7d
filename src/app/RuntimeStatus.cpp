// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/RuntimeStatus.hpp"

#include "core/localization/Texts.hpp"

#include <string>

namespace quillane {

namespace texts = core::texts;

namespace {

core::LocalizedText statusText(const RuntimeFacts& facts) {
    const auto& options = facts.options;
    if (facts.oldCopyRunning) {
        return texts::closeOldCopy;
    }
    if (options.paused) {
        return texts::paused;
    }
    if (!facts.keyboardAvailable) {
        return texts::keyboardNeedsX11;
    }
    if (!options.shouldMonitor() && !facts.fixesWrongLayout) {
        return texts::shortcutsOff;
    }
    if (!facts.canStartMonitor) {
        return texts::permissionsApproved(std::to_string(facts.grantedPermissions));
    }
    if (facts.screenSharingSuspended) {
        return texts::suspendedForScreenSharing.on(facts.desktop);
    }
    return facts.monitorRunning ? texts::shortcutsActive : texts::shortcutsCouldNotStart;
}

} // namespace

StatusRow statusRow(const RuntimeFacts& facts) {
    const auto mark = statusMark(facts);
    return {statusText(facts), mark == StatusMark::paused      ? "pause.circle"
                               : mark == StatusMark::keepAwake ? "cup.and.saucer"
                                                               : "clock"};
}

StatusMark statusMark(const RuntimeFacts& facts) {
    if (facts.options.paused) {
        return StatusMark::paused;
    }
    return facts.keepAwakeActive ? StatusMark::keepAwake : StatusMark::plain;
}

core::LocalizedText statusMarkLabel(StatusMark mark) {
    switch (mark) {
    case StatusMark::paused:
        return texts::statusItemPaused;
    case StatusMark::keepAwake:
        return texts::statusItemKeepingAwake;
    case StatusMark::plain:
        break;
    }
    return texts::statusItemActive;
}

} // namespace quillane
