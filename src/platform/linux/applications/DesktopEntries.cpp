// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/DesktopEntries.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

#include <glib.h>

namespace quillane {

namespace {

namespace fs = std::filesystem;

constexpr auto group = G_KEY_FILE_DESKTOP_GROUP;
constexpr std::uintmax_t largestEntry = 1024UL * 1024;
constexpr std::string_view suffix = ".desktop";

struct KeyFileFree {
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
};

using KeyFile = std::unique_ptr<GKeyFile, KeyFileFree>;

std::string taken(char* text) {
    const std::unique_ptr<char, decltype(&g_free)> owned(text, &g_free);
    return owned ? std::string(owned.get()) : std::string();
}

std::string value(GKeyFile& file, const char* key) {
    return taken(g_key_file_get_string(&file, group, key, nullptr));
}

bool isSet(GKeyFile& file, const char* key) {
    return g_key_file_get_boolean(&file, group, key, nullptr) != FALSE;
}

/// Programs whose name says nothing about the application that they start.
constexpr std::array<std::string_view, 14> starters{"bash", "dbus-launch", "env",    "flatpak", "gjs", "java", "node",
                                                    "perl", "pkexec",      "python", "python3", "sh",  "snap", "wine"};

std::string applicationProgram(const std::string& exec) {
    auto name = fs::path(programOfCommand(exec)).filename().string();
    return std::ranges::find(starters, name) != starters.end() ? std::string() : name;
}

bool hasCategory(const std::string& list, std::string_view category) {
    const auto all = ";" + list + ";";
    return all.find(";" + std::string(category) + ";") != std::string::npos;
}

std::optional<DesktopEntry> readEntry(std::string id, const fs::path& path) {
    std::error_code error;
    if (const auto size = fs::file_size(path, error); error || size > largestEntry) {
        return std::nullopt;
    }
    const KeyFile file(g_key_file_new());
    if (g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr) == FALSE) {
        return std::nullopt;
    }
    auto& entry = *file;
    const auto exec = value(entry, G_KEY_FILE_DESKTOP_KEY_EXEC);
    if (value(entry, G_KEY_FILE_DESKTOP_KEY_TYPE) != G_KEY_FILE_DESKTOP_TYPE_APPLICATION || exec.empty() ||
        isSet(entry, G_KEY_FILE_DESKTOP_KEY_HIDDEN) ||   // as if it did not exist
        isSet(entry, G_KEY_FILE_DESKTOP_KEY_TERMINAL)) { // its windows are the terminal's
        return std::nullopt;
    }
    return DesktopEntry{
        .id = std::move(id),
        .name = taken(g_key_file_get_locale_string(&entry, group, G_KEY_FILE_DESKTOP_KEY_NAME, nullptr, nullptr)),
        .windowClass = value(entry, G_KEY_FILE_DESKTOP_KEY_STARTUP_WM_CLASS),
        .program = applicationProgram(exec),
        .isShown = !isSet(entry, G_KEY_FILE_DESKTOP_KEY_NO_DISPLAY),
        .isTerminal = hasCategory(value(entry, G_KEY_FILE_DESKTOP_KEY_CATEGORIES), "TerminalEmulator")};
}

/// The entries below the folder with their identifiers ("Desktop File ID").
std::vector<std::pair<std::string, fs::path>> entriesBelow(const fs::path& folder) {
    std::vector<std::pair<std::string, fs::path>> found;
    std::error_code error;
    constexpr auto options =
        fs::directory_options::skip_permission_denied | fs::directory_options::follow_directory_symlink;
    constexpr int deepest = 4; // symbolic links may lead in circles
    for (fs::recursive_directory_iterator next(folder, options, error), end; !error && next != end;
         next.increment(error)) {
        if (next.depth() >= deepest) {
            next.disable_recursion_pending();
        }
        const auto& path = next->path();
        if (path.native().ends_with(suffix)) {
            auto id = path.lexically_relative(folder).string();
            id.resize(id.size() - suffix.size());
            std::ranges::replace(id, '/', '-');
            found.emplace_back(std::move(id), path);
        }
    }
    std::ranges::sort(found);
    return found;
}

} // namespace

std::vector<fs::path> applicationFolders() {
    const auto variable = [](const char* name) {
        const char* text = std::getenv(name);
        return std::string(text != nullptr ? text : "");
    };
    std::vector<fs::path> folders;
    const auto home = variable("XDG_DATA_HOME");
    folders.push_back(home.empty() ? fs::path(variable("HOME")) / ".local" / "share" : fs::path(home));
    auto list = variable("XDG_DATA_DIRS");
    if (list.empty()) {
        list = "/usr/local/share:/usr/share";
    }
    for (std::string_view rest = list; !rest.empty();) {
        const auto one = rest.substr(0, rest.find(':'));
        if (one.starts_with('/')) {
            folders.emplace_back(one);
        }
        rest.remove_prefix(std::min(one.size() + 1, rest.size()));
    }
    for (auto& folder : folders) {
        folder /= "applications";
    }
    return folders;
}

std::vector<DesktopEntry> desktopEntries(std::span<const fs::path> folders, const std::stop_token& stop) {
    std::vector<DesktopEntry> entries;
    std::set<std::string> seen;
    for (const auto& folder : folders) {
        for (auto& [id, path] : entriesBelow(folder)) {
            if (stop.stop_requested()) {
                return entries;
            }
            if (!seen.insert(id).second) {
                continue;
            }
            if (auto entry = readEntry(std::move(id), path)) {
                entries.push_back(std::move(*entry));
            }
        }
    }
    return entries;
}

std::string programOfCommand(const std::string& exec) {
    int count = 0;
    char** arguments = nullptr;
    if (g_shell_parse_argv(exec.c_str(), &count, &arguments, nullptr) == FALSE) {
        return {};
    }
    const std::unique_ptr<char*, decltype(&g_strfreev)> owned(arguments, &g_strfreev);
    std::string program = arguments[0];
    for (std::size_t i = 0; (i = program.find("%%", i)) != std::string::npos; ++i) {
        program.erase(i, 1);
    }
    return program;
}

} // namespace quillane
