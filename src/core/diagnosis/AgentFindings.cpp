// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/diagnosis/Findings.hpp"

#include <algorithm>

namespace quillane::core::findings {

namespace {

const std::string unknownWithoutAgent = "known to the running agent only";

bool lacksPermission(const DiagnosisFacts& facts) {
    return facts.session && facts.session->granted && facts.session->granted->size() < allPermissions.size();
}

/// Whether it looks like the roles of macOS. What else an application gives may be anything.
bool isRole(std::string_view text) {
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    return text.starts_with("AX") && text.size() <= 40 && std::ranges::all_of(text, isLetter);
}

} // namespace

Verdict eventTap(const DiagnosisFacts& facts) {
    if (!facts.agent) {
        return notApplicable(unknownWithoutAgent);
    }
    const auto& agent = *facts.agent;
    if (agent.tapEnabled) {
        return ok("made and enabled");
    }
    if (!agent.keyboardAvailable) {
        return notApplicable("this session lets no program observe the keyboard");
    }
    if (agent.options.paused || !(agent.options.shouldMonitor() || agent.fixesWrongLayout)) {
        return notApplicable(agent.options.paused ? "not made: everything is paused" : "not made: shortcuts are off");
    }
    if (agent.tapMade) {
        return problem("made, but the system has disabled it", "Quit Quillane and open it again.");
    }
    return lacksPermission(facts)
               ? problem("not made", "Give Quillane the permission that is missing above.")
               : problem("not made although the permissions are granted", "Quit Quillane and open it again.");
}

Verdict keyEvents(const DiagnosisFacts& facts) {
    if (!facts.agent) {
        return notApplicable(unknownWithoutAgent);
    }
    if (!facts.agent->tapEnabled) {
        return notApplicable("needs the event tap");
    }
    return facts.agent->keysSeen ? ok("seen")
                                 : warning("none seen yet", "Press a key in another application and ask again.");
}

Verdict secureInput(const DiagnosisFacts& facts) {
    if (!facts.agent) {
        return notApplicable(unknownWithoutAgent);
    }
    return facts.agent->secureInput
               ? warning("on", "Leave the password field. If it stays on, quit the program that has left it on.")
               : ok("off");
}

Verdict focusedElement(const DiagnosisFacts& facts) {
    if (!facts.agent) {
        return notApplicable(unknownWithoutAgent);
    }
    const auto& focus = facts.agent->focus;
    if (!focus) {
        return notApplicable("no application is in front");
    }
    const auto application = focus->application.empty() ? "an application without identifier" : focus->application;
    if (!focus->role) {
        return warning("none in " + application,
                       "Click into a text there; to ask meanwhile, run `sleep 5; quillane doctor`.");
    }
    return ok((isRole(*focus->role) ? *focus->role : "a role of its own") + " in " + application);
}

Verdict activity(const DiagnosisFacts& facts) {
    const auto& held = facts.system.holdsActivity;
    if (!held) {
        return notApplicable("this system has none");
    }
    if (!facts.agent) {
        return notApplicable(unknownWithoutAgent);
    }
    if (*held) {
        return ok("held off");
    }
    return facts.agent->tapEnabled || facts.agent->recordsCopies
               ? problem("may slow Quillane down", "Quit Quillane and open it again.")
               : notApplicable("nothing runs that it would slow down");
}

Verdict statusItem(const DiagnosisFacts& facts) {
    if (!facts.agent) {
        return notApplicable(unknownWithoutAgent);
    }
    const bool isMac = facts.system.desktop == Desktop::macOS;
    if (facts.agent->itemShown) {
        return ok(isMac ? "in the menu bar" : "in the system tray");
    }
    return isMac
               ? problem("not in the menu bar", "Quit programs whose items fill the menu bar, and turn Quillane on in "
                                                "System Settings where those lists menu bar items.")
               : problem("not shown: no system tray runs",
                         "Start a system tray, or an extension of your desktop that shows one.");
}

} // namespace quillane::core::findings
