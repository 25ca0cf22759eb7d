// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/fileshare/FileShareUpload.hpp"

#include "core/fileshare/FileShareProtocol.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace quillane::core {

namespace {

void require(bool condition, const char* rule) {
    if (!condition) {
        std::fprintf(stderr, "FileShareUpload: %s\n", rule);
        std::abort();
    }
}

UrlSessionConfiguration hardened(UrlSessionConfiguration configuration, const FileShareUpload::Limits& limits) {
    configuration.requestTimeout = limits.silence;
    configuration.resourceTimeout = limits.whole;
    configuration.maximumAnswerBytes = fileShareProtocol::maximumAnswerBytes;
    return configuration;
}

} // namespace

FileShareUpload::FileShareUpload(UrlSessionFactory factory, FileExaminer examiner)
    : FileShareUpload(std::move(factory), std::move(examiner), Limits{}) {}

FileShareUpload::FileShareUpload(UrlSessionFactory factory, FileExaminer examiner, Limits limits)
    : factory_(std::move(factory)), examiner_(std::move(examiner)), limits_(limits) {}

FileShareUpload::~FileShareUpload() = default;

void FileShareUpload::start(const Url& file, const FileShareServer& server, UrlSessionConfiguration configuration,
                            Progress progress, Completion completion) {
    require(std::this_thread::get_id() == thread_, "started on another thread");
    require(!started_ && !finished_, "started twice");
    started_ = true;
    server_ = server;
    progress_ = std::move(progress);
    completion_ = std::move(completion);
    const auto examiner = examiner_; // outlives this object, which the completion may destroy
    examiner(file, [this, alive = lifetime_.watch(),
                    configuration = hardened(std::move(configuration), limits_)](const ExaminedFile& examined) {
        if (alive && !finished_) {
            send(examined, configuration);
        }
    });
}

void FileShareUpload::send(const ExaminedFile& file, const UrlSessionConfiguration& configuration) {
    auto request =
        file.and_then([this](const SendableFile& found) { return fileShareProtocol::request(found, server_); });
    if (!request) {
        finish(tl::unexpected(FileShareFailure(request.error())));
        return;
    }
    fileSize_ = file->size;
    request->timeout = limits_.silence;
    session_ = factory_(configuration, *this);
    session_->upload(*request, file->path);
}

void FileShareUpload::cancel() {
    require(std::this_thread::get_id() == thread_, "cancelled on another thread");
    finish(tl::unexpected(FileShareFailure(UrlError::cancelled)));
}

void FileShareUpload::didSendBodyData(std::int64_t sent, std::int64_t expected) {
    if (finished_ || expected < 1 || !progress_) {
        return;
    }
    const auto progress = progress_; // the callback may cancel, which drops it
    progress(std::min(static_cast<double>(sent) / static_cast<double>(expected), 1.0));
}

void FileShareUpload::didReceiveData(std::span<const std::byte> data) {
    if (finished_) {
        return;
    }
    if (data.size() > fileShareProtocol::maximumAnswerBytes - responseBody_.size()) {
        forcedError_ = FileShareError::invalidResponse;
        session_->cancelTask();
        return;
    }
    responseBody_.insert(responseBody_.end(), data.begin(), data.end());
}

void FileShareUpload::redirectRequested() {
    forcedError_ = FileShareError::redirectRefused;
}

void FileShareUpload::didComplete(std::optional<UrlResponse> response, std::optional<UrlError> error) {
    if (finished_) {
        return;
    }
    if (forcedError_) {
        finish(tl::unexpected(FileShareFailure(*forcedError_)));
    } else if (error == UrlError::cannotReadFile) {
        finish(tl::unexpected(FileShareFailure(FileShareError::unreadableFile)));
    } else if (error) {
        finish(tl::unexpected(FileShareFailure(*error)));
    } else if (response) {
        finish(fileShareProtocol::link(responseBody_, response->statusCode, server_)
                   .map_error([](const FileShareError& refused) { return FileShareFailure(refused); }));
    } else {
        finish(tl::unexpected(FileShareFailure(FileShareError::invalidResponse)));
    }
}

void FileShareUpload::finish(const Result& result) {
    if (finished_) {
        return;
    }
    finished_ = true;
    session_.reset();
    progress_ = nullptr;
    // Last: the callback may destroy this object.
    if (const auto completion = std::exchange(completion_, nullptr)) {
        completion(result);
    }
}

} // namespace quillane::core
