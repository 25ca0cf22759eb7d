// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/UrlError.hpp"

#include <tl/expected.hpp>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>

namespace quillane {

/// The bytes of an upload. Used by one thread; any call may block.
class UploadSource {
public:
    virtual ~UploadSource() = default;

    /// How many bytes there are in all.
    [[nodiscard]] virtual std::int64_t size() const = 0;

    /// Fills the buffer as far as there are bytes; 0 at the end. Never returns the last byte of a source that has
    /// changed since it was opened, but fails with `fileChanged`.
    [[nodiscard]] virtual tl::expected<std::size_t, core::UrlError> read(std::span<std::byte> buffer) = 0;

    /// Rewinds to the first byte.
    virtual void rewind() = 0;

    /// Whether the source is unchanged since it was opened.
    [[nodiscard]] virtual bool isUnchanged() const = 0;
};

using OpenedSource = tl::expected<std::unique_ptr<UploadSource>, core::UrlError>;

/// Opens the regular file at the path. Never waits for a writer, a lease or a device. The file has changed if it
/// shrank, grew, was written to, or is no longer what the path names.
[[nodiscard]] OpenedSource openUploadFile(const std::filesystem::path& path);

} // namespace quillane
