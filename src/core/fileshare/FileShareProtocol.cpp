// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/fileshare/FileShareProtocol.hpp"

#include "core/support/Text.hpp"
#include "core/support/Utf8.hpp"

#include <string>
#include <string_view>
#include <system_error>

#include <unistd.h>

namespace quillane::core::fileShareProtocol {

namespace {

std::size_t countSegments(std::string_view path) {
    std::size_t count = 0;
    char previous = '/';
    for (const char character : path) {
        count += character != '/' && previous == '/' ? 1 : 0;
        previous = character;
    }
    return count;
}

bool isAcceptable(const UrlComponents& link, const FileShareServer& server) {
    if (!link.scheme || lowercased(*link.scheme) != server.scheme() || !link.host ||
        lowercased(*link.host) != lowercased(server.host())) {
        return false;
    }
    if (link.port.value_or(FileShareServer::defaultPort(server.scheme())) != server.port()) {
        return false;
    }
    if (link.user || link.password || link.query || link.fragment) {
        return false;
    }
    const auto path = link.path();
    return path.starts_with(server.path() + '/') &&
           countSegments(std::string_view(path).substr(server.path().size())) >= 2;
}

} // namespace

ExaminedFile examine(const Url& file) {
    auto path = file.filePath();
    if (!path) {
        return tl::unexpected(FileShareError::notRegularFile);
    }
    std::error_code error;
    const auto status = std::filesystem::status(*path, error);
    if (!std::filesystem::status_known(status) || !std::filesystem::exists(status)) {
        return tl::unexpected(FileShareError::unreadableFile);
    }
    if (!std::filesystem::is_regular_file(status)) {
        return tl::unexpected(FileShareError::notRegularFile);
    }
    if (::access(path->c_str(), R_OK) != 0) {
        return tl::unexpected(FileShareError::unreadableFile);
    }
    const auto size = std::filesystem::file_size(*path, error);
    return SendableFile{*std::move(path), error ? std::nullopt : std::optional(size)};
}

tl::expected<UrlRequest, FileShareError> request(const SendableFile& file, const FileShareServer& server) {
    auto components = UrlComponents::parse(server.url().absoluteString());
    if (!components) {
        return tl::unexpected(FileShareError::notRegularFile);
    }
    components->appendPathSegment(file.path.filename().native());
    const auto url = components->url();
    if (!url) {
        return tl::unexpected(FileShareError::notRegularFile);
    }
    UrlRequest result{.url = *url,
                      .method = "PUT",
                      .timeout = std::chrono::seconds(60),
                      .headers = {{"Content-Type", "application/octet-stream"}}};
    if (file.size) {
        result.headers.emplace_back("Content-Length", std::to_string(*file.size));
    }
    return result;
}

tl::expected<UrlRequest, FileShareError> request(const Url& file, const FileShareServer& server) {
    return examine(file).and_then([&](const SendableFile& examined) { return request(examined, server); });
}

tl::expected<Url, FileShareError> link(std::span<const std::byte> body, int statusCode, const FileShareServer& server) {
    if (statusCode < 200 || statusCode > 299) {
        return tl::unexpected(FileShareError::httpStatus(statusCode));
    }
    if (body.size() > maximumAnswerBytes) {
        return tl::unexpected(FileShareError::invalidResponse);
    }
    const std::string_view bytes(reinterpret_cast<const char*>(body.data()), body.size());
    const auto text = trimmedOfWhiteSpace(bytes);
    if (!isValidUtf8(bytes) || text.empty() || text.find_first_of("\r\n") != std::string_view::npos) {
        return tl::unexpected(FileShareError::invalidResponse);
    }
    auto components = UrlComponents::parseInternational(text);
    if (!components || !isAcceptable(*components, server)) {
        return tl::unexpected(FileShareError::invalidResponse);
    }
    components->zone.reset(); // the name of an interface of the server's machine
    const auto url = components->url();
    if (!url) {
        return tl::unexpected(FileShareError::invalidResponse);
    }
    return *url;
}

} // namespace quillane::core::fileShareProtocol
