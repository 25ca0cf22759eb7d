// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareModel.hpp"

#include "core/localization/Texts.hpp"
#include "fileshare/FileShareTest.hpp"

namespace quillane {
namespace {

using namespace std::chrono_literals;
using State = FileShareModel::State;

class FileShareModelTest : public FileShareTest {
protected:
    std::unique_ptr<FileShareModel> model_ = std::make_unique<FileShareModel>(file_, services_);
};

const core::Url link = core::Url::parse("https://files.example:8443/up/abc/file.txt").value();

TEST_F(FileShareModelTest, BeginsUploadingWithTheSavedServer) {
    EXPECT_EQ(model_->state(), State(FileShareModel::Uploading{}));
    EXPECT_EQ(model_->progress(), 0);
    EXPECT_FALSE(model_->copied());
    EXPECT_EQ(model_->server().displayName(), "files.example:8443/up");
    EXPECT_TRUE(sessions_.transfers.empty());
}

TEST_F(FileShareModelTest, StartUploadsTheFile) {
    model_->start();
    EXPECT_EQ(transfer().request->url.absoluteString(), "https://files.example:8443/up/file.txt");
    transfer().send(250, 1000);
    EXPECT_EQ(model_->progress(), 0.25);
}

TEST_F(FileShareModelTest, CompletesWithTheLink) {
    model_->start();
    answerWithLink();
    EXPECT_EQ(model_->state(), State(FileShareModel::Completed{link}));
}

TEST_F(FileShareModelTest, AFailureHasItsMessageWithThisUploadsServer) {
    model_->start();
    core::FileShareServer::standard().save(defaults_);
    transfer().complete(core::UrlResponse{413});
    EXPECT_EQ(model_->state(), State(FileShareModel::Failed{core::texts::fileTooLarge("files.example:8443/up")}));
}

TEST_F(FileShareModelTest, AFileThatCannotBeSentFailsAtOnce) {
    FileShareModel folder(core::Url::fromFilePath(files_.path()), services_);
    folder.start();
    EXPECT_EQ(folder.state(), State(FileShareModel::Failed{core::texts::selectRegularFile}));
}

TEST_F(FileShareModelTest, DiskThatHangsIsWaitedFor) {
    disk_.goAway();
    model_->start();
    EXPECT_EQ(model_->state(), State(FileShareModel::Uploading{}));
    EXPECT_TRUE(sessions_.transfers.empty());
    disk_.comeBack();
    answerWithLink();
    EXPECT_EQ(model_->state(), State(FileShareModel::Completed{link}));
}

TEST_F(FileShareModelTest, UploadToADiskThatHangsCanBeCancelled) {
    disk_.goAway();
    model_->start();
    model_->cancel();
    EXPECT_EQ(model_->state(), State(FileShareModel::Cancelled{}));
    disk_.comeBack();
    EXPECT_EQ(model_->state(), State(FileShareModel::Cancelled{}));
}

TEST_F(FileShareModelTest, FileThatCannotBeReadWhileItIsSentHasItsMessage) {
    model_->start();
    transfer().complete(std::nullopt, core::UrlError::cannotReadFile);
    EXPECT_EQ(model_->state(),
              State(FileShareModel::Failed{core::texts::cannotReadFile.on(desktop_.platform.desktop)}));
}

TEST_F(FileShareModelTest, WithoutAServerNothingIsSent) {
    core::FileShareServer::standard().save(defaults_);
    ASSERT_TRUE(model_->server().isPlaceholder() || core::FileShareServer::standard().isPlaceholder());
    EXPECT_FALSE(model_->needsServer());
    model_->start();
    EXPECT_TRUE(model_->needsServer());
    EXPECT_EQ(model_->state(), State(FileShareModel::Failed{core::texts::chooseServerFirst}));
    EXPECT_TRUE(sessions_.transfers.empty());
    core::FileShareServer::validating("http://nas")->save(defaults_);
    model_->start();
    EXPECT_FALSE(model_->needsServer());
    EXPECT_EQ(transfer().request->url.absoluteString(), "http://nas/file.txt");
}

TEST_F(FileShareModelTest, CancellingIsNotAFailure) {
    model_->start();
    model_->cancel();
    EXPECT_EQ(model_->state(), State(FileShareModel::Cancelled{}));
    EXPECT_TRUE(transfer().destroyed);
}

TEST_F(FileShareModelTest, CancellingAfterTheEndChangesNothing) {
    model_->start();
    answerWithLink();
    model_->cancel();
    EXPECT_EQ(model_->state(), State(FileShareModel::Completed{link}));
}

TEST_F(FileShareModelTest, AnotherTryStartsFromZeroWithTheServerSavedNow) {
    model_->start();
    transfer().send(500, 1000);
    model_->cancel();
    core::FileShareServer::validating("http://nas")->save(defaults_);
    model_->start();
    EXPECT_EQ(model_->state(), State(FileShareModel::Uploading{}));
    EXPECT_EQ(model_->progress(), 0);
    EXPECT_EQ(model_->server().displayName(), "nas");
    EXPECT_EQ(transfer().request->url.absoluteString(), "http://nas/file.txt");
}

TEST_F(FileShareModelTest, ChangingTheServerDoesNotTouchARunningUpload) {
    model_->start();
    core::FileShareServer::validating("http://nas")->save(defaults_);
    EXPECT_EQ(model_->server().displayName(), "files.example:8443/up");
    answerWithLink();
    EXPECT_EQ(model_->state(), State(FileShareModel::Completed{link}));
}

TEST_F(FileShareModelTest, CopiesTheLinkOnlyWhenThereIsOne) {
    pasteboard_.copyText("before");
    model_->start();
    model_->copyLink();
    EXPECT_EQ(copiedText(), "before");
    EXPECT_FALSE(model_->copied());
    answerWithLink();
    model_->copyLink();
    EXPECT_EQ(copiedText(), link.absoluteString());
    EXPECT_TRUE(model_->copied());
    model_->start();
    EXPECT_FALSE(model_->copied());
}

TEST_F(FileShareModelTest, ARefusedCopyIsNotCalledCopied) {
    model_->start();
    answerWithLink();
    pasteboard_.refuseWrites();
    model_->copyLink();
    EXPECT_FALSE(model_->copied());
}

TEST_F(FileShareModelTest, ARunningUploadDoesNotKeepItAlive) {
    model_->start();
    model_.reset();
    EXPECT_TRUE(transfer().destroyed);
}

TEST_F(FileShareModelTest, EveryChangeIsAnnounced) {
    int changes = 0;
    QObject::connect(model_.get(), &FileShareModel::changed, [&] { ++changes; });
    model_->start();
    EXPECT_EQ(changes, 1);
    transfer().send(1, 2);
    EXPECT_EQ(changes, 2);
    answerWithLink();
    EXPECT_EQ(changes, 3);
    model_->copyLink();
    EXPECT_EQ(changes, 4);
}

TEST(TransferRate, EstimatesSpeedAndTimeLeft) {
    TransferRate rate;
    const TransferRate::Time begin;
    EXPECT_FALSE(rate.estimate(1000));
    rate.add(0, begin);
    EXPECT_FALSE(rate.estimate(1000));
    rate.add(40, begin + 400ms);
    EXPECT_FALSE(rate.estimate(1000)); // too early to tell
    rate.add(100, begin + 1s);
    EXPECT_EQ(rate.estimate(1000), (TransferRate::Estimate{100, 9s}));
    EXPECT_EQ(rate.estimate(101), (TransferRate::Estimate{100, 1s}));
    EXPECT_FALSE(rate.estimate(100));
}

TEST(TransferRate, ForgetsWhatWasBeforeTheWindow) {
    TransferRate rate;
    const TransferRate::Time begin;
    for (int second = 0; second <= 20; ++second) {
        rate.add(second <= 10 ? second * 100 : 1000 + (second - 10) * 10, begin + std::chrono::seconds(second));
    }
    EXPECT_EQ(rate.estimate(1200)->bytesPerSecond, 10);
}

TEST(TransferRate, HalfASecondIsEnough) {
    const TransferRate::Time begin;
    TransferRate early;
    early.add(0, begin);
    early.add(50, begin + 499ms);
    EXPECT_FALSE(early.estimate(1000));
    TransferRate rate;
    rate.add(0, begin);
    rate.add(50, begin + 500ms);
    EXPECT_EQ(rate.estimate(150), (TransferRate::Estimate{100, 1s}));
}

TEST(TransferRate, MeasuresTheLastFiveSeconds) {
    const TransferRate::Time begin;
    TransferRate rate;
    rate.add(0, begin);
    for (int second = 1; second <= 5; ++second) {
        rate.add(1000 + 10 * second, begin + std::chrono::seconds(second));
    }
    EXPECT_EQ(rate.estimate(2000)->bytesPerSecond, 1050 / 5.0); // the first second was fast
    rate.add(1060, begin + 5999ms);
    EXPECT_GT(rate.estimate(2000)->bytesPerSecond, 100);
    rate.add(1060, begin + 6s);
    EXPECT_EQ(rate.estimate(2000)->bytesPerSecond, 10);
}

TEST(TransferRate, AStandstillHasNoEstimate) {
    TransferRate rate;
    const TransferRate::Time begin;
    rate.add(100, begin);
    rate.add(100, begin + 3s);
    EXPECT_FALSE(rate.estimate(1000));
}

} // namespace
} // namespace quillane
