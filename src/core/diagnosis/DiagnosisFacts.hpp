// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/PasteboardAccess.hpp"
#include "core/diagnosis/SystemFacts.hpp"
#include "core/permissions/ApplicationLocation.hpp"
#include "core/permissions/MacPermission.hpp"
#include "core/preferences/FeatureOptions.hpp"
#include "core/support/LoginItemStatus.hpp"

#include <filesystem>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace quillane::core {

/// Who has gathered the facts.
enum class Respondent {
    agent,
    command,               ///< because no agent runs
    commandForSilentAgent, ///< because the agent that runs does not answer
};

/// Where the program lies, as far as others may read it.
struct LocationFacts {
    std::string shown; ///< the path; only "~" in the home folder, whose names are the user's own
    bool isBundle = false;
    bool isInstalled = false;
    bool isTranslocated = false; ///< macOS runs a copy of it that is gone after quitting

    /// `homes` are the paths that the home folder is known by, as in $HOME and with symbolic links resolved.
    [[nodiscard]] static LocationFacts of(const ApplicationLocation& location,
                                          std::span<const std::filesystem::path> homes);

    bool operator==(const LocationFacts&) const = default;
};

struct InputSourceFacts {
    std::string name;
    bool isRTL = false;
};

struct UpdaterFacts {
    bool hasKey = false;
    bool checksAutomatically = false;
};

/// What any process of the session sees.
struct SessionFacts {
    std::optional<std::set<MacPermission>> granted; ///< none where the system would answer for the terminal instead
    std::optional<std::vector<InputSourceFacts>> inputSources; ///< none when the system does not list them
    std::string currentSource;                                 ///< name; empty when the system does not name one
    PasteboardAccess pasteboard = PasteboardAccess::allowed;
    std::optional<UpdaterFacts> updater; ///< none where something else updates the program
    LoginItemStatus loginItem = LoginItemStatus::unknown;
};

/// The element with the keyboard focus, in the application in front.
struct FocusFacts {
    std::string application;         ///< its bundle identifier; empty when it has none
    std::optional<std::string> role; ///< none when no element has the focus, or it does not answer
};

/// What only the running agent knows.
struct AgentFacts {
    FeatureOptions options;
    bool fixesWrongLayout = false; ///< needs the keyboard too
    bool keyboardAvailable = true; ///< the desktop lets programs observe keys
    bool tapMade = false;
    bool tapEnabled = false;
    bool keysSeen = false; ///< a key event has arrived since the tap was made
    bool secureInput = false;
    std::optional<FocusFacts> focus; ///< none when no application is in front
    bool recordsCopies = false;
    bool itemShown = false; ///< in the menu bar or system tray
};

/// Everything that a diagnosis is made of. Nothing of it was typed or copied by the user.
struct DiagnosisFacts {
    Respondent respondent{};
    std::string version;
    std::string qtVersion;
    LocationFacts location;
    SystemFacts system;
    std::string desktopError;            ///< why the program cannot run on this desktop; empty when it can
    std::optional<SessionFacts> session; ///< none when it cannot
    std::optional<AgentFacts> agent;     ///< only of the running agent
};

} // namespace quillane::core
