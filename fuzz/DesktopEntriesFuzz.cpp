// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Entries of installed applications, which any program may have put there: whatever is in the file, at most one entry
// is read of it, with the identifier that its name gives, and its program is without a folder.
#include "Require.hpp"

#include "platform/linux/applications/DesktopEntries.hpp"

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include <stdlib.h>

using namespace quillane;
using quillane::fuzz::require;

namespace {

/// A folder that goes with the process.
class Folder {
public:
    Folder() : path_(std::filesystem::temp_directory_path() / "quillane-fuzz-XXXXXX") {
        std::string name = path_;
        require(mkdtemp(name.data()) != nullptr);
        path_ = name;
    }

    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Folder folder;
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::ofstream(folder.path() / "application.desktop", std::ios::binary) << text << std::flush;
    const auto entries = desktopEntries(std::array{folder.path()});
    require(entries.size() <= 1);
    for (const auto& entry : entries) {
        require(entry.id == "application");
        require(entry.program.find('/') == std::string::npos);
    }
    static_cast<void>(programOfCommand(text.substr(0, text.find('\0'))));
    return 0;
}
