// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/HistoryDesktop.hpp"

#include <glib.h>

#include <memory>

namespace quillane::live {

tl::expected<ChildProcess, std::string> startKeyring(LiveDesktop& desktop) {
    if (!writeFile(desktop.home() / "password", "password")) {
        return tl::unexpected(std::string("no password"));
    }
    auto keyring = desktop.startProcess(
        {"sh", "-c", "exec gnome-keyring-daemon --foreground --unlock --components=secrets <~/password"});
    // Asks the bus: asking the keyring itself too early would start another one.
    const bool isOpen = keyring && waitUntil([&] {
                            return desktop
                                       .run({"dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
                                             "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner",
                                             "string:org.freedesktop.secrets"})
                                       .output.find("true") != std::string::npos;
                        });
    if (keyring && !isOpen) {
        return tl::unexpected(std::string("the keyring did not open"));
    }
    return keyring;
}

bool writeHistorySettings(const LiveDesktop& desktop, const core::ClipboardOptions& options,
                          std::map<std::string, std::string> more) {
    const auto json = core::encodeClipboardOptions(options);
    const std::unique_ptr<char, decltype(&g_free)> text(
        g_base64_encode(reinterpret_cast<const guchar*>(json.data()), json.size()), g_free);
    more[core::clipboardOptionsKey] = std::string("<data>") + text.get() + "</data>";
    return writeAgentSettings(desktop, more);
}

} // namespace quillane::live
