// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/fileshare/FileShareError.hpp"

#include "core/fileshare/FileShareServer.hpp"
#include "core/localization/Texts.hpp"

#include <string>

namespace quillane::core {

namespace {

LocalizedText message(const FileShareError& error, const FileShareServer& server, Desktop desktop) {
    switch (error.kind()) {
    case FileShareError::Kind::httpStatus:
        return error.status() == 413 ? texts::fileTooLarge(server.displayName())
                                     : texts::uploadFailedWithStatus(std::to_string(error.status()));
    case FileShareError::Kind::selectOneFile:
        return texts::selectOneFile;
    case FileShareError::Kind::unreadableFile:
        return texts::cannotReadFile.on(desktop);
    case FileShareError::Kind::notRegularFile:
        return texts::selectRegularFile;
    case FileShareError::Kind::invalidResponse:
    case FileShareError::Kind::redirectRefused:
        return texts::noValidLink;
    }
    return texts::couldNotUpload;
}

} // namespace

LocalizedText message(const FileShareFailure& failure, const FileShareServer& server, Desktop desktop) {
    if (const auto* error = std::get_if<FileShareError>(&failure)) {
        return message(*error, server, desktop);
    }
    return std::get<UrlError>(failure) == UrlError::timedOut ? texts::uploadTimedOut : texts::couldNotUpload;
}

} // namespace quillane::core
