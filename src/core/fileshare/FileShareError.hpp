// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/UrlError.hpp"
#include "core/localization/Desktop.hpp"
#include "core/localization/LocalizedText.hpp"

#include <variant>

namespace quillane::core {

class FileShareServer;

/// Why a file was not shared, apart from errors of the network and the system.
class FileShareError {
public:
    enum class Kind {
        httpStatus,      ///< the server answered with a status outside 200 to 299
        selectOneFile,   ///< no file was chosen, or more than one
        unreadableFile,  ///< the file cannot be examined or read
        notRegularFile,  ///< not a file, or a folder or device, or its name does not make a URL
        invalidResponse, ///< the answer is not one acceptable link
        redirectRefused, ///< the server redirected the upload
    };

    static const FileShareError selectOneFile;
    static const FileShareError unreadableFile;
    static const FileShareError notRegularFile;
    static const FileShareError invalidResponse;
    static const FileShareError redirectRefused;

    [[nodiscard]] static constexpr FileShareError httpStatus(int status) { return {Kind::httpStatus, status}; }

    [[nodiscard]] constexpr Kind kind() const { return kind_; }

    /// The status of the answer; 0 unless the kind is `httpStatus`.
    [[nodiscard]] constexpr int status() const { return status_; }

    bool operator==(const FileShareError&) const = default;

private:
    constexpr FileShareError(Kind kind, int status) : kind_(kind), status_(status) {}

    Kind kind_;
    int status_;
};

inline constexpr FileShareError FileShareError::selectOneFile{Kind::selectOneFile, 0};
inline constexpr FileShareError FileShareError::unreadableFile{Kind::unreadableFile, 0};
inline constexpr FileShareError FileShareError::notRegularFile{Kind::notRegularFile, 0};
inline constexpr FileShareError FileShareError::invalidResponse{Kind::invalidResponse, 0};
inline constexpr FileShareError FileShareError::redirectRefused{Kind::redirectRefused, 0};

/// Everything that can end an upload without a link.
using FileShareFailure = std::variant<FileShareError, UrlError>;

/// The message for the user. `server` is the one that the upload went to. A cancelled upload is not a failure and has
/// no message.
[[nodiscard]] LocalizedText message(const FileShareFailure& failure, const FileShareServer& server, Desktop desktop);

} // namespace quillane::core
