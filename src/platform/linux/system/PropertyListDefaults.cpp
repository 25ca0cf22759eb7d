// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/system/PropertyListDefaults.hpp"

#include "core/propertylist/PropertyList.hpp"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillane {
namespace {

namespace fs = std::filesystem;
using core::FileError;
using core::PropertyListValue;

std::optional<fs::path> absolutePathIn(const char* variable) {
    const char* value = std::getenv(variable);
    if (value == nullptr || *value != '/') {
        return std::nullopt;
    }
    return value;
}

fs::path homeFolder() {
    if (const auto home = absolutePathIn("HOME")) {
        return *home;
    }
    const auto* user = ::getpwuid(::getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

/// The time in the format 20260131T235959Z (ISO 8601).
std::string timestamp() {
    const auto now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    char text[32] = {};
    std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &utc);
    return text;
}

/// Renames a file unless the new name is taken; true on success. Sets errno.
bool renameToFreeName(const fs::path& from, const fs::path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) { // file systems that do not know the flag
        return false;
    }

    struct stat status {};

    if (::lstat(to.c_str(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return ::rename(from.c_str(), to.c_str()) == 0;
}

} // namespace

fs::path standardDefaultsFile() {
    return absolutePathIn("XDG_CONFIG_HOME").value_or(homeFolder() / ".config") / "quillane" / "defaults.plist";
}

PropertyListDefaults::PropertyListDefaults(fs::path file) : file_(std::move(file)) {
    core::removeAbandonedTemporaries(file_);
    load();
}

PropertyListDefaults::~PropertyListDefaults() {
    write();
}

std::optional<PropertyListValue> PropertyListDefaults::object(std::string_view key) const {
    const auto found = values_.find(std::string(key));
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void PropertyListDefaults::setObject(std::string_view key, PropertyListValue value) {
    change(std::string(key), std::move(value));
    write();
}

void PropertyListDefaults::setObjects(const Dictionary& values) {
    for (const auto& [key, value] : values) {
        change(key, value);
    }
    write();
}

void PropertyListDefaults::removeObject(std::string_view key) {
    change(std::string(key), std::nullopt);
    write();
}

void PropertyListDefaults::note(std::string_view key, PropertyListValue value) {
    change(std::string(key), std::move(value));
}

void PropertyListDefaults::change(std::string key, std::optional<PropertyListValue> value) {
    if (fileRead_ && object(key) == value) { // a file that is still unread may hold something else
        return;
    }
    if (value) {
        values_.insert_or_assign(key, *value);
    } else {
        values_.erase(key);
    }
    unsaved_.insert_or_assign(std::move(key), std::move(value));
}

/// Takes the file's content and applies the changes that it does not hold yet.
void PropertyListDefaults::load() {
    const auto content = core::readFile(file_, maximumBytes);
    const int error = content ? 0 : content.error().number;
    if (error == 0 || error == ENOENT || error == EFBIG) {
        const auto parsed = content ? core::parsePropertyList(*content, maximumBytes)
                                    : tl::unexpected(core::PropertyListError::tooLarge);
        const auto* dictionary = parsed ? parsed->as<Dictionary>() : nullptr;
        if (dictionary != nullptr) {
            values_ = *dictionary;
        } else if (error != ENOENT) {
            setAside();
            return;
        }
        fileRead_ = true;
        lastError_.reset();
    } else {
        lastError_ = FileError{error};
    }
    for (const auto& [key, value] : unsaved_) {
        if (value) {
            values_.insert_or_assign(key, *value);
        } else {
            values_.erase(key);
        }
    }
}

/// Renames the damaged file, so that the user can look at it and the next write does not destroy it.
void PropertyListDefaults::setAside() {
    const auto base = file_.string() + ".damaged-" + timestamp();
    auto name = base;
    for (int number = 2; !renameToFreeName(file_, name); ++number) {
        if (errno != EEXIST) {
            lastError_ = FileError{errno};
            return;
        }
        name = base + "-" + std::to_string(number);
    }
    fileRead_ = true;
    lastError_.reset();
}

void PropertyListDefaults::write() {
    if (unsaved_.empty()) {
        return;
    }
    if (!fileRead_) {
        load();
        if (!fileRead_) {
            return;
        }
    }
    if (const auto written = tryToWrite()) {
        unsaved_.clear();
        lastError_.reset();
    } else {
        lastError_ = written.error();
    }
}

tl::expected<void, FileError> PropertyListDefaults::tryToWrite() {
    const auto content = core::serializePropertyList(values_, maximumBytes);
    if (!content) {
        return tl::unexpected(FileError{EFBIG});
    }
    if (auto folder = core::createPrivateFolder(file_.parent_path()); !folder) {
        return folder;
    }
    return core::writeFileAtomically(file_, *content, S_IRUSR | S_IWUSR);
}

} // namespace quillane
