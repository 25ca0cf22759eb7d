// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "startup/ProcessTree.hpp"

#include "support/Files.hpp"
#include "support/TemporaryFolder.hpp"

#include <charconv>
#include <sstream>
#include <string>

namespace quillane::live {
namespace {

/// The number after "name:" in a file of "name: number" lines; 0 when it has none.
std::uint64_t field(const std::string& file, const std::string& name) {
    std::istringstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(name + ":")) {
            return std::stoull(line.substr(name.size() + 1));
        }
    }
    return 0;
}

std::vector<std::filesystem::path> numberedFolders(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> result;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (entry.path().filename().string().find_first_not_of("0123456789") == std::string::npos) {
            result.push_back(entry.path());
        }
    }
    return result;
}

} // namespace

ResourceUse resourceUseOf(pid_t process) {
    ResourceUse use;
    const auto folder = std::filesystem::path("/proc") / std::to_string(process);
    use.processes = 1;
    const auto memory = readFile(folder / "smaps_rollup");
    use.memoryKiB = field(memory, "Pss");
    use.writtenKiB = field(memory, "Private_Dirty");
    for (const auto& task : numberedFolders(folder / "task")) {
        std::uint64_t time = 0;
        const std::string schedule = readFile(task / "schedstat");
        std::from_chars(schedule.data(), schedule.data() + schedule.size(), time);
        use.cpuNanoseconds += time;
        use.wakeUps += field(readFile(task / "status"), "voluntary_ctxt_switches");
    }
    for (const auto& other : numberedFolders("/proc")) {
        if (field(readFile(other / "status"), "PPid") == static_cast<std::uint64_t>(process)) {
            const auto child = resourceUseOf(std::stoi(other.filename().string()));
            use.processes += child.processes;
            use.cpuNanoseconds += child.cpuNanoseconds;
            use.wakeUps += child.wakeUps;
            use.memoryKiB += child.memoryKiB;
            use.writtenKiB += child.writtenKiB;
        }
    }
    return use;
}

} // namespace quillane::live
