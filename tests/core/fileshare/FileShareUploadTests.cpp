// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/fileshare/FileShareUpload.hpp"

#include "fakes/FakeFileExaminer.hpp"
#include "fakes/FakeUrlSession.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

using namespace std::chrono_literals;
using testing::Test;

class FileShareUploadTest : public Test {
protected:
    void start() { start(files_.url("file.txt", "12345678")); }

    void start(const Url& file) {
        upload_->start(
            file, server_, configuration_, [this](double fraction) { fractions_.push_back(fraction); },
            [this](const FileShareUpload::Result& result) { results_.push_back(result); });
    }

    [[nodiscard]] fakes::FakeUrlSessions::Transfer& transfer() const { return sessions_.last(); }

    [[nodiscard]] FileShareFailure failure() const { return results_.at(0).error(); }

    live::TemporaryFolder files_;
    fakes::FakeFileExaminer disk_;
    fakes::FakeUrlSessions sessions_;
    FileShareServer server_ = FileShareServer::validating("https://host").value();
    UrlSessionConfiguration configuration_;
    std::unique_ptr<FileShareUpload> upload_ = std::make_unique<FileShareUpload>(sessions_.factory(), disk_.examiner());
    std::vector<double> fractions_;
    std::vector<FileShareUpload::Result> results_;
};

using FileShareUploadDeathTest = FileShareUploadTest;

TEST_F(FileShareUploadTest, SendsTheFileByARequestOfTheProtocol) {
    start();
    EXPECT_EQ(transfer().request->url.absoluteString(), "https://host/file.txt");
    EXPECT_EQ(transfer().request->method, "PUT");
    EXPECT_EQ(transfer().file, files_.path() / "file.txt");
    EXPECT_TRUE(results_.empty());
}

TEST_F(FileShareUploadTest, HardensTheConfiguration) {
    configuration_ = {.requestTimeout = 1h, .resourceTimeout = 100h, .maximumAnswerBytes = 1U << 30U};
    start();
    EXPECT_EQ(transfer().configuration,
              (UrlSessionConfiguration{.requestTimeout = 60s, .resourceTimeout = 3600s, .maximumAnswerBytes = 8192}));
}

TEST_F(FileShareUploadTest, LimitsMayBeShorter) {
    upload_ = std::make_unique<FileShareUpload>(sessions_.factory(), disk_.examiner(),
                                                FileShareUpload::Limits{.silence = 1s, .whole = 2s});
    start();
    EXPECT_EQ(transfer().configuration.requestTimeout, 1s);
    EXPECT_EQ(transfer().configuration.resourceTimeout, 2s);
    EXPECT_EQ(transfer().request->timeout, 1s);
}

TEST_F(FileShareUploadTest, TheLinkInPiecesIsTheResult) {
    start();
    transfer().receive("https://host/ab");
    transfer().receive("c/file.txt\n");
    transfer().complete(UrlResponse{201});
    ASSERT_EQ(results_.size(), 1U);
    EXPECT_EQ(results_[0]->absoluteString(), "https://host/abc/file.txt");
    EXPECT_TRUE(transfer().destroyed);
}

TEST_F(FileShareUploadTest, AFileThatCannotBeSentFailsAtOnceWithoutASession) {
    start(Url::fromFilePath(files_.path()));
    ASSERT_EQ(results_.size(), 1U);
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::notRegularFile));
    EXPECT_TRUE(sessions_.transfers.empty());
}

TEST_F(FileShareUploadTest, ProgressIsAFractionOfAtMostOne) {
    start();
    transfer().send(0, 8);
    transfer().send(2, 8);
    transfer().send(8, 8);
    transfer().send(9, 8);
    EXPECT_EQ(fractions_, (std::vector{0.0, 0.25, 1.0, 1.0}));
}

TEST_F(FileShareUploadTest, ProgressOfHugeFilesDoesNotOverflow) {
    start();
    transfer().send(INT64_MAX / 2, INT64_MAX);
    EXPECT_EQ(fractions_, std::vector{0.5});
}

TEST_F(FileShareUploadTest, ProgressNeedsAKnownSizeAndAnUnfinishedUpload) {
    start();
    transfer().send(5, 0);
    transfer().send(5, -1);
    upload_->cancel();
    transfer().send(5, 8);
    EXPECT_TRUE(fractions_.empty());
}

TEST_F(FileShareUploadTest, NoProgressCallbackIsNeeded) {
    upload_->start(files_.url("a"), server_, {}, nullptr, [this](const auto& result) { results_.push_back(result); });
    transfer().send(1, 2);
    transfer().complete(UrlResponse{500});
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::httpStatus(500)));
}

TEST_F(FileShareUploadTest, AnAnswerOf8192BytesIsReadAndALongerOneRefused) {
    start();
    transfer().receive(std::string(8192, ' '));
    EXPECT_FALSE(transfer().cancelled);
    transfer().receive("x");
    EXPECT_TRUE(transfer().cancelled);
    EXPECT_TRUE(results_.empty());
    transfer().completeCancelled();
    ASSERT_EQ(results_.size(), 1U);
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::invalidResponse));
}

TEST_F(FileShareUploadTest, ATooLongPieceIsNotPartlyTaken) {
    start();
    transfer().receive("https://host/abc/f");
    transfer().receive(std::string(8192, 'x'));
    transfer().complete(UrlResponse{200}); // too late to be cancelled
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::invalidResponse));
}

TEST_F(FileShareUploadTest, ARedirectWinsOverStatusLinkAndError) {
    start();
    transfer().redirect();
    transfer().receive("https://host/abc/f");
    transfer().complete(UrlResponse{200});
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::redirectRefused));

    upload_ = std::make_unique<FileShareUpload>(sessions_.factory(), disk_.examiner());
    results_.clear();
    start();
    transfer().redirect();
    transfer().complete(UrlResponse{307}, UrlError::networkConnectionLost);
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::redirectRefused));
}

TEST_F(FileShareUploadTest, AnErrorWinsOverAnAnswer) {
    start();
    transfer().receive("https://host/abc/f");
    transfer().complete(UrlResponse{200}, UrlError::fileChanged);
    EXPECT_EQ(failure(), FileShareFailure(UrlError::fileChanged));
}

TEST_F(FileShareUploadTest, FileThatCannotBeReadWhileItIsSentIsUnreadable) {
    start();
    transfer().complete(std::nullopt, UrlError::cannotReadFile);
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::unreadableFile));
}

TEST_F(FileShareUploadTest, UploadBeginsWhenTheDiskAnswers) {
    disk_.goAway();
    start();
    EXPECT_TRUE(sessions_.transfers.empty());
    EXPECT_TRUE(results_.empty());
    EXPECT_EQ(upload_->fileSize(), std::nullopt);
    disk_.comeBack();
    EXPECT_EQ(transfer().request->headers.back().second, "8");
    EXPECT_EQ(upload_->fileSize(), 8U);
}

TEST_F(FileShareUploadTest, RefusalComesWhenTheDiskAnswers) {
    disk_.goAway();
    start(Url::fromFilePath(files_.path()));
    EXPECT_TRUE(results_.empty());
    disk_.comeBack();
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::notRegularFile));
}

TEST_F(FileShareUploadTest, CancellingDoesNotWaitForTheDisk) {
    disk_.goAway();
    start();
    upload_->cancel();
    EXPECT_EQ(failure(), FileShareFailure(UrlError::cancelled));
    disk_.comeBack();
    EXPECT_EQ(results_.size(), 1U);
    EXPECT_TRUE(sessions_.transfers.empty());
}

TEST_F(FileShareUploadTest, DiskMayAnswerAfterTheUploadIsGone) {
    disk_.goAway();
    start();
    upload_.reset();
    disk_.comeBack();
    EXPECT_TRUE(results_.empty());
    EXPECT_TRUE(sessions_.transfers.empty());
}

TEST_F(FileShareUploadTest, NeitherAnswerNorErrorIsAnInvalidResponse) {
    start();
    transfer().complete(std::nullopt);
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::invalidResponse));
}

TEST_F(FileShareUploadTest, AGoodStatusWithoutALinkIsAnInvalidResponse) {
    start();
    transfer().complete(UrlResponse{200});
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::invalidResponse));
}

TEST_F(FileShareUploadTest, CancellingCompletesInsideTheCall) {
    start();
    upload_->cancel();
    ASSERT_EQ(results_.size(), 1U);
    EXPECT_EQ(failure(), FileShareFailure(UrlError::cancelled));
    EXPECT_TRUE(transfer().destroyed);
    upload_->cancel();
    EXPECT_EQ(results_.size(), 1U);
}

TEST_F(FileShareUploadTest, CancellingAfterTheResultDoesNothing) {
    start();
    transfer().complete(UrlResponse{500});
    upload_->cancel();
    ASSERT_EQ(results_.size(), 1U);
    EXPECT_EQ(failure(), FileShareFailure(FileShareError::httpStatus(500)));
}

TEST_F(FileShareUploadTest, CancellingFromTheProgressCallbackIsSafe) {
    upload_->start(
        files_.url("a"), server_, {}, [this](double) { upload_->cancel(); },
        [this](const auto& result) { results_.push_back(result); });
    transfer().send(1, 2);
    EXPECT_EQ(results_.size(), 1U);
}

TEST_F(FileShareUploadTest, TheCompletionMayDestroyTheUpload) {
    upload_->start(files_.url("a"), server_, {}, nullptr, [this](const auto& result) {
        results_.push_back(result);
        upload_.reset();
    });
    transfer().receive("https://host/abc/a");
    transfer().complete(UrlResponse{200});
    EXPECT_EQ(results_.size(), 1U);
    EXPECT_FALSE(upload_);
}

TEST_F(FileShareUploadTest, DestroyingARunningUploadEndsItWithoutAResult) {
    start();
    upload_.reset();
    EXPECT_TRUE(transfer().destroyed);
    transfer().complete(UrlResponse{200});
    EXPECT_TRUE(results_.empty());
}

TEST_F(FileShareUploadDeathTest, BrokenPreconditionsStopTheProgram) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(
        {
            start();
            start();
        },
        "started twice");
    EXPECT_DEATH(
        {
            upload_->cancel();
            start();
        },
        "started twice");
    EXPECT_DEATH(std::thread([this] { start(); }).join(), "another thread");
    EXPECT_DEATH(std::thread([this] { upload_->cancel(); }).join(), "another thread");
}

} // namespace
} // namespace quillane::core
