// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileShareError.hpp"
#include "core/fileshare/FileShareServer.hpp"
#include "core/fileshare/UrlSession.hpp"

#include <tl/expected.hpp>

#include <cstddef>
#include <span>

/// What is said between the agent and a file server: the file goes there by PUT, and the answer's body is its link.
namespace quillane::core::FileShareProtocol {

/// A longer answer is not read.
inline constexpr std::size_t maximumAnswerBytes = 8192;

/// The request that uploads the file at a file URL to the server's path, under the file's own name. Looks at the file,
/// does not open it.
[[nodiscard]] tl::expected<UrlRequest, FileShareError> request(const Url& file, const FileShareServer& server);

/// The link in an answer: the only line of its body, a URL on the same scheme, host and port as the server, inside its
/// path, with at least two path segments of its own (RFC 3986).
[[nodiscard]] tl::expected<Url, FileShareError> link(std::span<const std::byte> body, int statusCode,
                                                     const FileShareServer& server);

} // namespace quillane::core::FileShareProtocol
