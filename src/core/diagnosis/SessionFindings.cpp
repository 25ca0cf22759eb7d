// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/diagnosis/Findings.hpp"

#include <algorithm>

namespace quillane::core::findings {

namespace {

const std::string unknownWithoutSession = "unknown without a screen";

Verdict permission(const DiagnosisFacts& facts, MacPermission permission, const std::string& page,
                   const std::string& service) {
    if (!facts.session) {
        return notApplicable(unknownWithoutSession);
    }
    if (!facts.session->granted) {
        return notApplicable("known to the running agent only; macOS would answer for the terminal");
    }
    if (facts.session->granted->contains(permission)) {
        return ok("granted");
    }
    if (facts.system.desktop == Desktop::linuxDesktop) {
        return problem("not granted", "Choose Request on the permissions page of Quillane's settings.");
    }
    return problem("not granted", "Turn Quillane on in System Settings, Privacy & Security, " + page +
                                      ". If it is on there, run `tccutil reset " + service +
                                      " com.quillane.app` and give the permission again.");
}

Verdict service(BusService state, Verdict notStarted, Verdict absent) {
    switch (state) {
    case BusService::available:
        return ok("answers");
    case BusService::locked:
        return warning("locked", "Unlock your keyring: until then the clipboard history stays in memory.");
    case BusService::unused:
        return warning("has no default keyring",
                       "Create one in your keyring program: until then the clipboard history stays in memory.");
    case BusService::notStarted:
        return notStarted;
    case BusService::absent:
        return absent;
    case BusService::silent:
        return problem("does not answer", "Sign out and in again.");
    case BusService::noBus:
        break;
    }
    return problem("there is no session bus", "Sign in to a desktop session, or start one with dbus-run-session.");
}

} // namespace

Verdict accessibility(const DiagnosisFacts& facts) {
    return permission(facts, MacPermission::accessibility, "Accessibility", "Accessibility");
}

Verdict inputMonitoring(const DiagnosisFacts& facts) {
    return permission(facts, MacPermission::inputMonitoring, "Input Monitoring", "ListenEvent");
}

Verdict inputSources(const DiagnosisFacts& facts) {
    if (!facts.session) {
        return notApplicable(unknownWithoutSession);
    }
    const auto& sources = facts.session->inputSources;
    if (!sources || sources->empty()) {
        return problem("the system lists none", "Add input sources in the keyboard settings of your desktop.");
    }
    std::string names;
    for (const auto& source : *sources) {
        names += (names.empty() ? "" : ", ") + source.name;
    }
    const auto& current = facts.session->currentSource;
    names += current.empty() ? "; none in use" : "; in use: " + current;
    if (std::ranges::none_of(*sources, &InputSourceFacts::isRTL)) {
        return warning(names, "Add Hebrew or Arabic in the keyboard settings of your desktop.");
    }
    if (sources->size() < 2) {
        return warning(names, "Add a second input source: there is nothing to switch to.");
    }
    return ok(names);
}

Verdict pasteboard(const DiagnosisFacts& facts) {
    if (!facts.session) {
        return notApplicable(unknownWithoutSession);
    }
    constexpr auto advice = "Allow Quillane in System Settings, Privacy & Security, Paste from Other Apps.";
    switch (facts.session->pasteboard) {
    case PasteboardAccess::allowed:
        return ok("allowed");
    case PasteboardAccess::asked:
        return warning("the system asks each time", advice);
    case PasteboardAccess::denied:
        break;
    }
    return facts.agent && !facts.agent->recordsCopies ? warning("denied", advice) : problem("denied", advice);
}

Verdict updater(const DiagnosisFacts& facts) {
    if (!facts.session) {
        return notApplicable(unknownWithoutSession);
    }
    if (!facts.session->updater) {
        return facts.system.desktop == Desktop::linuxDesktop
                   ? notApplicable("whatever has installed Quillane updates it")
                   : warning("not in this build", "Install a released version to get updates.");
    }
    if (!facts.session->updater->hasKey) {
        return warning("off: this build has no update key", "Install a released version to get updates.");
    }
    return ok(facts.session->updater->checksAutomatically ? "checks automatically" : "checks when asked");
}

Verdict loginItem(const DiagnosisFacts& facts) {
    if (!facts.session) {
        return notApplicable(unknownWithoutSession);
    }
    switch (facts.session->loginItem) {
    case LoginItemStatus::enabled:
        return ok("starts at login");
    case LoginItemStatus::notRegistered:
        return ok("does not start at login");
    case LoginItemStatus::requiresApproval:
        return warning("waits for your approval", "Turn Quillane on in System Settings, General, Login Items.");
    case LoginItemStatus::notFound:
        return warning("the system does not know this copy",
                       "Move Quillane into the Applications folder and open it there.");
    case LoginItemStatus::unknown:
        break;
    }
    return warning("unknown", "Look into System Settings, General, Login Items.");
}

Verdict accessibilityBus(const DiagnosisFacts& facts) {
    if (!facts.system.accessibilityBus) {
        return notApplicable("this system needs none");
    }
    return service(*facts.system.accessibilityBus,
                   warning("not started", "Choose Request on the permissions page of Quillane's settings."),
                   problem("not installed", "Install at-spi2-core, and sign out and in again."));
}

Verdict secretService(const DiagnosisFacts& facts) {
    if (!facts.system.secretService) {
        return notApplicable("the Keychain keeps secrets on this system");
    }
    const std::string advice =
        "Install a keyring (gnome-keyring, KWallet, KeePassXC): without one the clipboard history stays in memory.";
    const bool isWanted = facts.agent && facts.agent->recordsCopies;
    return service(*facts.system.secretService, ok("starts when it is needed"),
                   isWanted ? problem("not installed", advice) : warning("not installed", advice));
}

} // namespace quillane::core::findings
