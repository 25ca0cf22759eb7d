// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/common/curl/TransferChannel.hpp"
#include "platform/common/curl/UploadSource.hpp"

#include <memory>
#include <optional>
#include <string>

namespace quillane {

struct CurlTransferRequest {
    core::UrlRequest request;
    core::UrlSessionConfiguration configuration;
    std::optional<std::string> proxy; ///< as returned by ProxySettings::proxyFor
};

/// Sends the source on the calling thread and reports everything, the completion last, to the channel. Returns when the
/// transfer is over or the channel wants it to end.
void runCurlTransfer(const CurlTransferRequest& request, UploadSource& source, TransferChannel& channel);

} // namespace quillane
