// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareModel.hpp"

#include "core/clipboard/PasteboardTypes.hpp"

#include <QPointer>

#include <system_error>
#include <utility>

namespace quillane {

namespace {

/// The size for the estimate; 0 when it cannot be told, and then there is none.
std::int64_t sizeOf(const core::Url& file) {
    const auto path = file.filePath();
    std::error_code error;
    const auto size = path ? std::filesystem::file_size(*path, error) : 0;
    return error ? 0 : static_cast<std::int64_t>(size);
}

} // namespace

FileShareModel::FileShareModel(core::Url file, const FileShareServices& services)
    : desktop_(services.desktop),
      file_(std::move(file)),
      userDefaults_(services.userDefaults),
      pasteboard_(services.pasteboard),
      sessions_(services.sessions),
      now_(services.now),
      server_(core::FileShareServer::saved(services.userDefaults)) {}

FileShareModel::~FileShareModel() = default;

void FileShareModel::start() {
    state_ = Uploading{};
    progress_ = 0;
    copied_ = false;
    server_ = core::FileShareServer::saved(userDefaults_);
    fileSize_ = sizeOf(file_);
    rate_ = {};
    upload_ = std::make_unique<core::FileShareUpload>(sessions_);
    emit changed();
    const QPointer weak(this);
    upload_->start(
        file_, server_, core::UrlSessionConfiguration{},
        [weak](double fraction) {
            if (weak) {
                weak->setProgress(fraction);
            }
        },
        [weak](const core::FileShareUpload::Result& result) {
            if (weak) {
                weak->complete(result);
            }
        });
}

void FileShareModel::cancel() {
    if (upload_) {
        upload_->cancel();
    }
}

void FileShareModel::copyLink() {
    const auto* completed = std::get_if<Completed>(&state_);
    if (completed == nullptr) {
        return;
    }
    pasteboard_.clear();
    copied_ = pasteboard_.setString(core::PasteboardTypes::string, completed->link.absoluteString());
    emit changed();
}

std::optional<TransferRate::Estimate> FileShareModel::estimate() const {
    return rate_.estimate(fileSize_);
}

void FileShareModel::setProgress(double fraction) {
    progress_ = fraction;
    rate_.add(static_cast<std::int64_t>(fraction * static_cast<double>(fileSize_)), now_());
    emit changed();
}

void FileShareModel::complete(const core::FileShareUpload::Result& result) {
    if (result) {
        state_ = Completed{*result};
    } else if (result.error() == core::FileShareFailure(core::UrlError::cancelled)) {
        state_ = Cancelled{};
    } else {
        state_ = Failed{message(result.error(), server_, desktop_)};
    }
    emit changed();
}

} // namespace quillane
