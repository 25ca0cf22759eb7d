// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileShareUpload.hpp"
#include "core/localization/LocalizedText.hpp"
#include "fileshare/FileShareServices.hpp"
#include "fileshare/TransferRate.hpp"

#include <QObject>

#include <memory>
#include <variant>

namespace quillane {

/// One file that is being shared: what its window shows. Main thread.
class FileShareModel : public QObject {
    Q_OBJECT

public:
    struct Completed {
        core::Url link;
        bool operator==(const Completed&) const = default;
    };

    struct Failed {
        core::LocalizedText message;
        bool operator==(const Failed&) const = default;
    };

    struct Uploading {
        bool operator==(const Uploading&) const = default;
    };

    struct Cancelled {
        bool operator==(const Cancelled&) const = default;
    };

    using State = std::variant<Completed, Failed, Uploading, Cancelled>;

    /// For the file at a file URL, to the currently saved server.
    FileShareModel(core::Url file, const FileShareServices& services);
    ~FileShareModel() override;

    /// Uploads from the beginning, to the currently saved server. A running upload is dropped. Fails at once when no
    /// server has been chosen yet (`needsServer`).
    void start();

    /// Ends the upload if one runs: the state becomes `Cancelled`.
    void cancel();

    /// Replaces the pasteboard's contents with the link; does nothing without one.
    void copyLink();

    [[nodiscard]] const core::Url& file() const { return file_; }

    [[nodiscard]] const State& state() const { return state_; }

    /// 0 to 1.
    [[nodiscard]] double progress() const { return progress_; }

    /// The link is on the pasteboard.
    [[nodiscard]] bool copied() const { return copied_; }

    /// Where the file goes, or went.
    [[nodiscard]] const core::FileShareServer& server() const { return server_; }

    /// A server must be chosen before the file can be shared.
    [[nodiscard]] bool needsServer() const { return server_.isPlaceholder(); }

    /// Speed and time left, when they can be estimated.
    [[nodiscard]] std::optional<TransferRate::Estimate> estimate() const;

signals:
    /// Something that the window shows has changed.
    void changed();

private:
    /// For the estimate; 0 when unknown, in which case there is no estimate.
    [[nodiscard]] std::int64_t fileSize() const;
    void setProgress(double fraction);
    void complete(const core::FileShareUpload::Result& result);

    core::Desktop desktop_;
    core::Url file_;
    core::UserDefaults& userDefaults_;
    core::PasteboardContents& pasteboard_;
    core::UrlSessionFactory sessions_;
    core::FileExaminer examiner_;
    std::function<TransferRate::Time()> now_;
    State state_ = Uploading{};
    double progress_ = 0;
    bool copied_ = false;
    core::FileShareServer server_;
    TransferRate rate_;
    std::unique_ptr<core::FileShareUpload> upload_;
};

} // namespace quillane
