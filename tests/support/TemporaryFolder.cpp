// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "support/TemporaryFolder.hpp"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

namespace quillane::live {

tl::expected<TemporaryFolder, std::string> TemporaryFolder::create(const std::string& prefix) {
    std::error_code error;
    const auto parent = std::filesystem::temp_directory_path(error);
    std::string path = (error ? std::filesystem::path("/tmp") : parent) / (prefix + "-XXXXXX");
    if (mkdtemp(path.data()) == nullptr) {
        return tl::unexpected("cannot make " + path + ": " + std::strerror(errno));
    }
    return TemporaryFolder(path);
}

TemporaryFolder::~TemporaryFolder() {
    if (!path_.empty()) {
        std::error_code ignored; // what cannot be removed stays in the temporary folder
        std::filesystem::remove_all(path_, ignored);
    }
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool writeFile(const std::filesystem::path& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    return static_cast<bool>(file.flush());
}

} // namespace quillane::live
