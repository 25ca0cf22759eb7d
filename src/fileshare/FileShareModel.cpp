// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareModel.hpp"

#include "core/clipboard/PasteboardTypes.hpp"
#include "core/localization/Texts.hpp"

#include <QPointer>

#include <utility>

namespace quillane {

FileShareModel::FileShareModel(core::Url file, const FileShareServices& services)
    : desktop_(services.platform.desktop),
      file_(std::move(file)),
      userDefaults_(*services.platform.userDefaults),
      pasteboard_(*services.platform.pasteboard),
      sessions_(services.platform.urlSessions),
      examiner_(services.examiner),
      now_(services.now),
      server_(core::FileShareServer::saved(*services.platform.userDefaults)) {}

FileShareModel::~FileShareModel() = default;

void FileShareModel::start() {
    state_ = Uploading{};
    progress_ = 0;
    copied_ = false;
    server_ = core::FileShareServer::saved(userDefaults_);
    rate_ = {};
    upload_.reset();
    if (needsServer()) {
        state_ = Failed{core::texts::chooseServerFirst};
        emit changed();
        return;
    }
    upload_ = std::make_unique<core::FileShareUpload>(sessions_, examiner_);
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
    copied_ = pasteboard_.setString(core::pasteboardTypes::string, completed->link.absoluteString());
    emit changed();
}

std::optional<TransferRate::Estimate> FileShareModel::estimate() const {
    return rate_.estimate(fileSize());
}

std::int64_t FileShareModel::fileSize() const {
    return upload_ ? static_cast<std::int64_t>(upload_->fileSize().value_or(0)) : 0;
}

void FileShareModel::setProgress(double fraction) {
    progress_ = fraction;
    rate_.add(static_cast<std::int64_t>(fraction * static_cast<double>(fileSize())), now_());
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
