// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillane::core {

/// The decoded name after the last slash of a URL's path, trailing slashes aside; "/" for the root, and empty for an
/// empty path. None when the text is not an absolute URL. Characters that a URL should have encoded, as Qt leaves
/// brackets and others leave spaces, stand for themselves.
[[nodiscard]] std::optional<std::string> lastPathComponent(std::string_view url);

/// The path that a file URL names on this machine. None for any other text.
[[nodiscard]] std::optional<std::filesystem::path> referencedFile(std::string_view url);

/// Whether a file URL names its file by an identifier instead of a path, as Finder copies files
/// ("file:///.file/id=6571367.2773272"; NSURL, fileReferenceURL). Only the system knows which path that is now.
[[nodiscard]] bool isFileReference(std::string_view url);

/// Finds the path that a file URL names now; none when it names none. May be called on any thread, and waits for the
/// disk when the URL is a reference by identifier.
using FileFinder = std::function<std::optional<std::filesystem::path>(std::string_view url)>;

} // namespace quillane::core
