// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/SetAsideHistories.hpp"

#include "core/clipboard/ClipboardVault.hpp"
#include "core/clipboard/VaultNames.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>

#include <unistd.h>

namespace quillane::core::setAsideHistories {

namespace {

namespace fs = std::filesystem;
using Reason = VaultError::Reason;

constexpr std::string_view datePattern = "0000-00-00T000000Z"; ///< a digit for each zero
constexpr int maximumInOneSecond = 100;

tl::unexpected<VaultError> failure(Reason reason, int systemError) {
    return tl::unexpected(VaultError{reason, systemError});
}

std::string datedText(Date date) {
    using namespace std::chrono;
    const auto seconds = static_cast<std::int64_t>(std::clamp(std::floor(date.secondsSinceReferenceDate), -1e10, 1e11) +
                                                   referenceDateInUnixSeconds);
    const sys_seconds time{std::chrono::seconds(seconds)};
    const auto day = floor<days>(time);
    const year_month_day date_{day};
    const hh_mm_ss clock{time - day};
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d%02d%02dZ", static_cast<int>(date_.year()),
                  static_cast<unsigned>(date_.month()), static_cast<unsigned>(date_.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text.data();
}

int number(std::string_view digits) {
    int value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

/// Reads the date at the beginning of a text.
std::optional<Date> parseDate(std::string_view text) {
    using namespace std::chrono;
    const auto fits = [](char shape, char letter) {
        return shape == '0' ? letter >= '0' && letter <= '9' : letter == shape;
    };
    if (text.size() < datePattern.size() ||
        !std::ranges::equal(datePattern, text.substr(0, datePattern.size()), fits)) {
        return std::nullopt;
    }
    const year_month_day day{year(number(text.substr(0, 4))), month(static_cast<unsigned>(number(text.substr(5, 2)))),
                             std::chrono::day(static_cast<unsigned>(number(text.substr(8, 2))))};
    if (!day.ok()) {
        return std::nullopt;
    }
    const auto time = sys_days(day) + hours(number(text.substr(11, 2))) + minutes(number(text.substr(13, 2))) +
                      seconds(number(text.substr(15, 2)));
    return Date{static_cast<double>(time.time_since_epoch().count()) - referenceDateInUnixSeconds};
}

/// Dated after all others, whatever the clock says, because the oldest of too many are erased.
Date dateOfNext(const fs::path& vaultFolder, Date now) {
    const auto all = list(vaultFolder);
    if (!all || all->empty() || all->front().date <= now) {
        return now;
    }
    return Date{all->front().date.secondsSinceReferenceDate + 1};
}

void removeLock(const fs::path& folder) {
    static_cast<void>(::unlink((folder / vaultNames::lock).c_str())); // nobody writes here
}

/// Erases those beyond the number that is kept. One that cannot be erased now is erased with the next.
void prune(const fs::path& vaultFolder) {
    const auto all = list(vaultFolder);
    for (std::size_t i = maximumCount; all && i < all->size(); ++i) {
        static_cast<void>(erase((*all)[i]));
    }
}

} // namespace

VaultFolder::Result<void> add(const fs::path& vaultFolder, Date now) {
    const auto folder = cleanFolderPath(vaultFolder);
    const auto dated = folder.string() + "-" + datedText(dateOfNext(folder, now));
    for (int i = 1; i <= maximumInOneSecond; ++i) {
        const auto target = i == 1 ? dated : dated + "-" + std::to_string(i);
        if (::rename(folder.c_str(), target.c_str()) == 0) {
            removeLock(target);
            prune(folder);
            return flushFolder(folder.parent_path());
        }
        if (errno != ENOTEMPTY && errno != EEXIST) {
            break;
        }
    }
    return failure(Reason::write, errno);
}

VaultFolder::Result<std::vector<SetAsideHistory>> list(const fs::path& vaultFolder) {
    const auto folder = cleanFolderPath(vaultFolder);
    const auto prefix = folder.filename().string() + "-";
    std::vector<SetAsideHistory> found;
    std::error_code error;
    fs::directory_iterator entry(folder.parent_path(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const auto name = entry->path().filename().string();
        const auto date = name.starts_with(prefix) ? parseDate(name.substr(prefix.size())) : std::nullopt;
        std::error_code absent;
        if (!date || !entry->is_directory(absent)) {
            continue;
        }
        const auto hasFiles = ClipboardVault::hasFiles(entry->path());
        if (!hasFiles) {
            return tl::unexpected(hasFiles.error());
        }
        if (*hasFiles) {
            found.push_back({entry->path(), *date});
        }
    }
    if (error && error != std::errc::no_such_file_or_directory) {
        return failure(Reason::folder, error.value());
    }
    std::ranges::sort(found, std::greater(), [](const SetAsideHistory& history) {
        return std::tuple(history.date, history.folder.string().size(), history.folder.string());
    });
    return found;
}

VaultFolder::Result<void> erase(const SetAsideHistory& history) {
    if (auto erased = ClipboardVault::eraseFiles(history.folder); !erased) {
        return erased;
    }
    removeLock(history.folder);
    if (::rmdir(history.folder.c_str()) != 0 && errno != ENOTEMPTY && errno != EEXIST && errno != ENOENT) {
        return failure(Reason::write, errno);
    }
    return {};
}

VaultFolder::Result<void> eraseAll(const fs::path& vaultFolder) {
    const auto all = list(vaultFolder);
    if (!all) {
        return tl::unexpected(all.error());
    }
    for (const auto& history : *all) {
        if (auto erased = erase(history); !erased) {
            return erased;
        }
    }
    return {};
}

} // namespace quillane::core::setAsideHistories
