// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Entries of installed applications, which any program may have put there: whatever is in the file, at most one entry
// is read of it, with the identifier that its name gives, and its program is without a folder.
#include "Require.hpp"

#include "platform/linux/applications/DesktopEntries.hpp"
#include "support/TemporaryFolder.hpp"

#include <array>
#include <string>

using namespace quillane;
using quillane::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const live::TemporaryFolder folder;
    const std::string text(reinterpret_cast<const char*>(data), size);
    static_cast<void>(folder.file("application.desktop", text));
    const auto entries = desktopEntries(std::array{folder.path()});
    require(entries.size() <= 1);
    for (const auto& entry : entries) {
        require(entry.id == "application");
        require(entry.program.find('/') == std::string::npos);
    }
    static_cast<void>(programOfCommand(text.substr(0, text.find('\0'))));
    return 0;
}
