// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/AutostartLoginItem.hpp"

#include "core/support/AtomicFile.hpp"

#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

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

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Whether the session would start the entry.
bool isInEffect(std::istream& entry) {
    bool inGroup = false;
    bool starts = false;
    for (std::string line; std::getline(entry, line);) {
        const auto text = trimmed(line);
        if (text.starts_with('[')) {
            inGroup = text == "[Desktop Entry]";
            continue;
        }
        const auto equals = text.find('=');
        if (!inGroup || equals == std::string_view::npos) {
            continue;
        }
        const auto key = trimmed(text.substr(0, equals));
        const auto value = trimmed(text.substr(equals + 1));
        if ((key == "Hidden" && value == "true") || (key == "X-GNOME-Autostart-enabled" && value == "false")) {
            return false;
        }
        starts = starts || (key == "Exec" && !value.empty());
    }
    return starts;
}

} // namespace

AutostartLoginItem::AutostartLoginItem(std::filesystem::path program, const std::filesystem::path& folder)
    : program_(std::move(program)), file_(folder / "com.quillane.app.desktop") {}

LoginItemStatus AutostartLoginItem::status() const {
    std::ifstream entry(file_);
    return entry && isInEffect(entry) ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
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
