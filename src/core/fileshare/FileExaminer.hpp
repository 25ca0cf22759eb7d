// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileShareError.hpp"
#include "core/support/Url.hpp"

#include <tl/expected.hpp>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

namespace quillane::core {

/// A regular file that can be read.
struct SendableFile {
    std::filesystem::path path;
    std::optional<std::uintmax_t> size; ///< in bytes; none when the disk does not report it

    bool operator==(const SendableFile&) const = default;
};

using ExaminedFile = tl::expected<SendableFile, FileShareError>;

/// Examines the file at a URL (`fileShareProtocol::examine`) without holding up the main thread. Main thread. The
/// completion is called exactly once on the main thread: inside the call when the disk answers at once, else later. A
/// disk that never answers makes the file unreadable.
using FileExaminer = std::function<void(const Url& file, std::function<void(const ExaminedFile&)> completion)>;

} // namespace quillane::core
