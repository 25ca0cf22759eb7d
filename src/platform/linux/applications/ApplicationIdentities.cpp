// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/applications/ApplicationIdentities.hpp"

#include "core/direction/SupportedApplication.hpp"

#include <algorithm>
#include <array>

namespace quillane {

namespace {

struct Identity {
    std::string_view windowClass; ///< in lower case
    std::string_view bundleID;
};

constexpr std::string_view screenSharing = "com.apple.ScreenSharing";

/// Applications that the agent treats specially have the identifier of their counterpart on macOS. Those with direction
/// commands have a table of their own, see SupportedApplication.hpp.
constexpr std::array identities{
    // The agent itself.
    Identity{"quillane", "com.quillane.app"},
    // Viewers of another computer's screen, which has its own keyboard.
    Identity{"gnome-connections", screenSharing},
    Identity{"krdc", screenSharing},
    Identity{"org.gnome.connections", screenSharing},
    Identity{"org.kde.krdc", screenSharing},
    Identity{"org.remmina.remmina", screenSharing},
    Identity{"remmina", screenSharing},
    Identity{"remote-viewer", screenSharing},
    Identity{"tigervnc viewer", screenSharing},
    Identity{"vinagre", screenSharing},
    Identity{"virt-viewer", screenSharing},
    Identity{"vncviewer", screenSharing},
    Identity{"xfreerdp", screenSharing},
    // Password managers.
    Identity{"1password", "com.1password.1password"},
    Identity{"com.1password.1password", "com.1password.1password"},
    Identity{"bitwarden", "com.bitwarden.desktop"},
    Identity{"com.bitwarden.desktop", "com.bitwarden.desktop"},
    Identity{"keepassxc", "org.keepassxc.keepassxc"},
    Identity{"org.keepassxc.keepassxc", "org.keepassxc.keepassxc"},
};

} // namespace

std::string caseless(std::string_view name) {
    std::string result(name);
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

std::optional<std::string> knownBundleIdentifier(std::string_view windowClass) {
    const auto name = caseless(windowClass);
    if (const auto* application = core::applicationOfWindowClass(name)) {
        return std::string(application->bundleID);
    }
    const auto* found = std::ranges::find(identities, name, &Identity::windowClass);
    return found != identities.end() ? std::optional<std::string>(found->bundleID) : std::nullopt;
}

} // namespace quillane
