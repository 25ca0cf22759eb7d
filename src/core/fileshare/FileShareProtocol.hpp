// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileExaminer.hpp"
#include "core/fileshare/FileShareServer.hpp"
#include "core/fileshare/UrlSession.hpp"

#include <cstddef>
#include <span>

/// The protocol between the agent and a file server: the file goes there by PUT, and the body of the answer is its
/// link.
namespace quillane::core::fileShareProtocol {

/// The maximum length of an answer, in bytes.
inline constexpr std::size_t maximumAnswerBytes = 8192;

/// Examines the file at a file URL without opening it. Blocks for as long as its disk does.
[[nodiscard]] ExaminedFile examine(const Url& file);

/// The request that uploads a file to the server's path, under the file's own name.
[[nodiscard]] tl::expected<UrlRequest, FileShareError> request(const SendableFile& file, const FileShareServer& server);

/// The same for the file at a file URL, which is examined first.
[[nodiscard]] tl::expected<UrlRequest, FileShareError> request(const Url& file, const FileShareServer& server);

/// The link in an answer: the only line of its body, a URL on the same scheme, host and port as the server, inside its
/// path, with at least two path segments of its own (RFC 3986). Names are compared in ASCII, IPv6 addresses without
/// their zone, both in any case.
[[nodiscard]] tl::expected<Url, FileShareError> link(std::span<const std::byte> body, int statusCode,
                                                     const FileShareServer& server);

} // namespace quillane::core::fileShareProtocol
