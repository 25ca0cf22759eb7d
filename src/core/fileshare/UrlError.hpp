// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane::core {

/// Why a transfer ended without a complete answer.
enum class UrlError {
    cancelled,
    timedOut,                   ///< no data within the request timeout, or the maximum time has passed
    cannotFindHost,             ///< the name cannot be resolved, or parsers of the URL would disagree on it
    cannotConnectToHost,        ///< nothing listens there, or the network or proxy cannot be reached
    networkConnectionLost,      ///< the connection ended before the answer was complete
    secureConnectionFailed,     ///< TLS could not be agreed on
    serverCertificateUntrusted, ///< no authority that the system trusts has certified this host
    cannotReadFile,             ///< the file cannot be opened or read
    fileChanged,                ///< the file shrank, grew, was written to or went away while it was sent
    badServerResponse,          ///< the answer is not HTTP
    dataLengthExceedsMaximum,   ///< the answer is longer than the session reads
    unknown,
};

} // namespace quillane::core
