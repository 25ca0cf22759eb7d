// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/diagnosis/Findings.hpp"

#include <algorithm>
#include <iterator>

namespace quillane::core {

namespace {

bool isBelow(const std::filesystem::path& path, const std::filesystem::path& folder) {
    const auto below = path.lexically_relative(folder);
    return folder.is_absolute() && folder.has_relative_path() && !below.empty() && *below.begin() != "..";
}

} // namespace

LocationFacts LocationFacts::of(const ApplicationLocation& location, std::span<const std::filesystem::path> homes) {
    const auto path = location.application.lexically_normal();
    const bool isAtHome = std::ranges::any_of(
        homes, [&](const std::filesystem::path& home) { return isBelow(path, home.lexically_normal()); });
    // macOS runs a download that the user has not moved from /private/var/folders/…/AppTranslocation/UUID/d.
    const bool isTranslocated = std::ranges::find(path, "AppTranslocation") != path.end();
    return {.shown = isAtHome ? "~" : path.string(),
            .isBundle = path.extension() == ".app",
            .isInstalled = location.installed,
            .isTranslocated = isTranslocated};
}

namespace findings {

Verdict agent(const DiagnosisFacts& facts) {
    switch (facts.respondent) {
    case Respondent::agent:
        return ok("runs and has answered");
    case Respondent::command:
        return warning("does not run; this command has looked by itself",
                       "Start it and ask again: only the agent knows what is missing below.");
    case Respondent::commandForSilentAgent:
        break;
    }
    return problem("runs but does not answer; this command has looked by itself",
                   "End it, with Activity Monitor or `kill`, and start it again.");
}

Verdict program(const DiagnosisFacts& facts) {
    return ok("Quillane " + facts.version);
}

Verdict qt(const DiagnosisFacts& facts) {
    return ok(facts.qtVersion);
}

Verdict system(const DiagnosisFacts& facts) {
    return ok(facts.system.name);
}

Verdict signature(const DiagnosisFacts& facts) {
    const auto& signature = facts.system.signature;
    if (!signature) {
        return notApplicable("this system does not sign programs");
    }
    switch (signature->state) {
    case SignatureState::valid:
        return ok("valid, " + (signature->team.empty() ? "without a team" : "team " + signature->team));
    case SignatureState::adHoc:
        return warning("ad hoc, without a team",
                       "Permissions end with each build: give them again, or sign with a certificate of your own.");
    case SignatureState::altered:
        return problem("the program is not what was signed", "Install Quillane again.");
    case SignatureState::missing:
        break;
    }
    return problem("none", "Install Quillane again, or build it with scripts/run, which signs it.");
}

Verdict location(const DiagnosisFacts& facts) {
    const auto& location = facts.location;
    if (location.isTranslocated) {
        return problem("a temporary copy that macOS has made of a download",
                       "Quit Quillane, move it into the Applications folder in Finder, and open it there.");
    }
    if (facts.system.desktop == Desktop::macOS && !location.isBundle) {
        return warning(location.shown + ", outside an application",
                       "macOS gives the permissions to the terminal instead: open Quillane.app.");
    }
    if (!location.isInstalled) {
        return warning(location.shown + ", outside the Applications folders",
                       "Move Quillane into the Applications folder: permissions belong to the copy there.");
    }
    return ok(location.shown == "~" ? "in the home folder (~)" : location.shown);
}

Verdict windowSystem(const DiagnosisFacts& facts) {
    const auto& system = facts.system.windowSystem;
    if (!facts.desktopError.empty()) {
        return problem(facts.desktopError, "Ask in a terminal of the session whose screen you see.");
    }
    if (!system) {
        return notApplicable("this system has only one");
    }
    switch (*system) {
    case WindowSystem::x11:
        return ok("X11");
    case WindowSystem::waylandWithX11:
    case WindowSystem::wayland:
        return problem(*system == WindowSystem::wayland ? "Wayland" : "Wayland, with an X server",
                       "Wayland lets no program observe the keyboard: sign in to an X11 session to have shortcuts.");
    case WindowSystem::none:
        break;
    }
    return problem("none", "Ask in a terminal of the session whose screen you see.");
}

} // namespace findings

} // namespace quillane::core
