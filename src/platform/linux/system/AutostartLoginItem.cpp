// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/system/AutostartLoginItem.hpp"

#include "core/support/AtomicFile.hpp"
#include "platform/linux/applications/DesktopEntries.hpp"

#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <glib.h>

namespace quillane {

namespace {

/// An argument of the key Exec (freedesktop.org, "Desktop Entry Specification", "The Exec key"): quoted, with the
/// escapes of the quoted argument and then those of the value, and no field codes.
std::string execArgument(std::string_view argument) {
    std::string result = "\"";
    for (const char character : argument) {
        if (character == '\\') {
            result += "\\\\\\\\";
        } else if (character == '"' || character == '`' || character == '$') {
            result += "\\\\";
            result += character;
        } else if (character == '%') {
            result += "%%";
        } else {
            result += character;
        }
    }
    return result + '"';
}

struct KeyFileFree {
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
};

std::string value(GKeyFile& entry, const char* key) {
    const std::unique_ptr<char, decltype(&g_free)> text(
        g_key_file_get_string(&entry, G_KEY_FILE_DESKTOP_GROUP, key, nullptr), &g_free);
    return text ? std::string(text.get()) : std::string();
}

bool canBeRun(const std::string& program) {
    const std::unique_ptr<char, decltype(&g_free)> found(g_find_program_in_path(program.c_str()), &g_free);
    return found != nullptr;
}

/// Whether the session would start the entry.
bool isInEffect(GKeyFile& entry) {
    if (value(entry, G_KEY_FILE_DESKTOP_KEY_HIDDEN) == "true" || value(entry, "X-GNOME-Autostart-enabled") == "false") {
        return false;
    }
    const auto required = value(entry, G_KEY_FILE_DESKTOP_KEY_TRY_EXEC);
    const auto program = programOfCommand(value(entry, G_KEY_FILE_DESKTOP_KEY_EXEC));
    return !program.empty() && canBeRun(program) && (required.empty() || canBeRun(required));
}

} // namespace

AutostartLoginItem::AutostartLoginItem(std::filesystem::path program, const std::filesystem::path& folder)
    : program_(std::move(program)), file_(folder / "com.quillane.app.desktop") {}

LoginItemStatus AutostartLoginItem::status() const {
    const std::unique_ptr<GKeyFile, KeyFileFree> entry(g_key_file_new());
    const bool isRead = g_key_file_load_from_file(entry.get(), file_.c_str(), G_KEY_FILE_NONE, nullptr) != FALSE;
    return isRead && isInEffect(*entry) ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
}

bool AutostartLoginItem::enable() {
    if (!core::createPrivateFolder(file_.parent_path())) {
        return false;
    }
    const std::string entry = "[Desktop Entry]\n"
                              "Type=Application\n"
                              "Name=Quillane\n"
                              "Icon=com.quillane.app\n"
                              "Exec=" +
                              execArgument(program_.string()) +
                              " --at-login\n"
                              "X-GNOME-Autostart-enabled=true\n";
    return core::writeFileAtomically(file_, std::as_bytes(std::span(entry)), 0644).has_value();
}

bool AutostartLoginItem::disable() {
    std::error_code error;
    std::filesystem::remove(file_, error);
    return !error;
}

std::filesystem::path autostartFolder() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    if (config != nullptr && *config == '/') {
        return std::filesystem::path(config) / "autostart";
    }
    const char* home = std::getenv("HOME");
    return std::filesystem::path(home != nullptr ? home : "/") / ".config" / "autostart";
}

} // namespace quillane
