// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Url.hpp"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include <stdlib.h>
#include <unistd.h>

namespace quillane::fakes {

/// A private folder for a test, removed with everything in it.
class TemporaryFiles {
public:
    TemporaryFiles() {
        auto name = (std::filesystem::temp_directory_path() / "quillane-share-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        folder_ = name;
    }

    TemporaryFiles(const TemporaryFiles&) = delete;
    TemporaryFiles& operator=(const TemporaryFiles&) = delete;

    ~TemporaryFiles() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

    /// Writes a file and returns its path.
    [[nodiscard]] std::filesystem::path file(std::string_view name, std::string_view content = "content") const {
        auto path = folder_ / name;
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    [[nodiscard]] core::Url url(std::string_view name, std::string_view content = "content") const {
        return core::Url::fromFilePath(file(name, content));
    }

private:
    std::filesystem::path folder_;
};

} // namespace quillane::fakes
