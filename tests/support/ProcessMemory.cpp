// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "support/ProcessMemory.hpp"

#include "support/Files.hpp"
#include "support/TemporaryFolder.hpp"

#include <algorithm>
#include <cctype>
#include <sstream>

#include <fcntl.h>
#include <unistd.h>

namespace quillane::live {
namespace {

struct Mapping {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    std::string permissions;
    std::string name;
    std::string flags; ///< two letters each, with a space before and after
};

std::vector<Mapping> mappingsOf(pid_t process) {
    std::vector<Mapping> mappings;
    std::istringstream lines(readFile("/proc/" + std::to_string(process) + "/smaps"));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string range;
        words >> range;
        if (const auto dash = range.find('-'); dash != std::string::npos && !range.ends_with(':')) {
            Mapping mapping;
            mapping.begin = std::stoull(range.substr(0, dash), nullptr, 16);
            mapping.end = std::stoull(range.substr(dash + 1), nullptr, 16);
            std::string skipped;
            words >> mapping.permissions >> skipped >> skipped >> skipped >> mapping.name;
            mappings.push_back(std::move(mapping));
        } else if (range == "VmFlags:" && !mappings.empty()) {
            mappings.back().flags = line.substr(range.size()) + ' ';
        }
    }
    return mappings;
}

std::string printable(std::string text) {
    std::ranges::replace_if(
        text, [](unsigned char character) { return std::isprint(character) == 0; }, '.');
    return text;
}

} // namespace

std::optional<std::vector<MemoryMatch>> findInMemory(pid_t process, std::span<const std::byte> bytes) {
    const int memory = ::open(("/proc/" + std::to_string(process) + "/mem").c_str(), O_RDONLY | O_CLOEXEC);
    const auto mappings = mappingsOf(process);
    if (memory < 0 || mappings.empty()) {
        if (memory >= 0) {
            ::close(memory);
        }
        return std::nullopt;
    }
    const std::string_view wanted(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    std::vector<MemoryMatch> matches;
    for (const auto& mapping : mappings) {
        if (!mapping.permissions.starts_with('r') || mapping.name.starts_with("[v")) { // pages of the kernel
            continue;
        }
        std::string content(mapping.end - mapping.begin, '\0');
        std::size_t filled = 0;
        while (filled < content.size()) {
            const auto count = ::pread(memory, content.data() + filled, content.size() - filled,
                                       static_cast<off_t>(mapping.begin + filled));
            if (count <= 0) {
                break;
            }
            filled += static_cast<std::size_t>(count);
        }
        content.resize(filled);
        for (auto at = content.find(wanted); at != std::string::npos; at = content.find(wanted, at + 1)) {
            const auto before = std::min<std::size_t>(at, 48);
            matches.push_back({mapping.begin + at, mapping.name, mapping.flags.find(" lo ") != std::string::npos,
                               mapping.flags.find(" dd ") == std::string::npos,
                               printable(content.substr(at - before, before + wanted.size() + 48))});
        }
    }
    ::close(memory);
    return matches;
}

std::vector<MemoryMatch> findTextInMemory(pid_t process, std::u16string_view text) {
    const std::u32string utf32(text.begin(), text.end());
    const std::u16string utf16(text);
    std::string utf8;
    for (const unsigned unit : utf32) {
        if (unit < 0x80) {
            utf8 += static_cast<char>(unit);
            continue;
        }
        if (unit < 0x800) {
            utf8 += static_cast<char>(0xC0 | unit >> 6);
        } else {
            utf8 += static_cast<char>(0xE0 | unit >> 12);
            utf8 += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
        }
        utf8 += static_cast<char>(0x80 | (unit & 0x3F));
    }
    std::vector<MemoryMatch> found;
    for (const auto& bytes :
         {std::as_bytes(std::span(utf8)), std::as_bytes(std::span(utf16)), std::as_bytes(std::span(utf32))}) {
        const auto more = findInMemory(process, bytes).value();
        found.insert(found.end(), more.begin(), more.end());
    }
    return found;
}

std::string describe(const std::vector<MemoryMatch>& matches) {
    std::ostringstream text;
    for (const auto& match : matches) {
        text << std::hex << match.address << ' ' << match.mapping << (match.isLocked ? " locked" : "")
             << (match.isDumped ? " dumped" : "") << ": " << match.surroundings << '\n';
    }
    return text.str();
}

} // namespace quillane::live
