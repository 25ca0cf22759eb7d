// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/UploadTest.hpp"
#include "servers/FaultServer.hpp"

#include <condition_variable>
#include <fstream>
#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using core::FileShareFailure;
using core::UrlError;

/// Larger than what the sockets between an upload and its server hold.
constexpr std::size_t largeSize = 40U << 20U;

/// A file that changes while it is sent: the server reads some of it and then waits.
class ChangingFileTest : public UploadTest {
protected:
    void SetUp() override { ASSERT_TRUE(server_) << server_.error(); }

    /// Runs an upload, makes the change in the middle of it, and returns how it ended.
    std::string outcomeOf(const std::function<void()>& change) {
        start(server_->address("gate"), core::Url::fromFilePath(path_));
        EXPECT_TRUE(runUntil([this] { return !server_->events("waiting", "gate").empty(); }));
        change();
        core::FileShareUpload release(sessions_->factory(), disk_.examiner());
        bool isReleased = false;
        release.start(files_.url("name"), core::FileShareServer::validating(server_->address("release")).value(), {},
                      nullptr, [&](const auto&) { isReleased = true; });
        EXPECT_TRUE(runUntil([&] { return isReleased && isFinished(); }));
        return results_.empty() ? "no result" : describe(results_[0], server_->address("gate"));
    }

    /// The upload failed because of the file, and the server did not get a whole one.
    void expectChangeSeen() {
        EXPECT_EQ(failure(), FileShareFailure(UrlError::fileChanged));
        ASSERT_TRUE(runUntil([this] { return !server_->events("end", "gate").empty(); }));
        EXPECT_LT(server_->events("end", "gate")[0].value("bodyBytes", largeSize), largeSize);
    }

    tl::expected<servers::FaultServer, std::string> server_ = servers::FaultServer::start();
    std::filesystem::path path_ = files_.file("file.bin", std::string(largeSize, 'x'));
};

TEST_F(ChangingFileTest, UnchangedItIsSentWhole) {
    EXPECT_EQ(outcomeOf([] {}), "link " + server_->address("gate") + "/token/file.bin");
    ASSERT_TRUE(runUntil([this] { return !server_->events("end", "gate").empty(); }));
    EXPECT_EQ(server_->events("end", "gate")[0].value("bodyBytes", std::size_t{0}), largeSize);
}

TEST_F(ChangingFileTest, ReadingOrRenamingAnotherFileIsNotAChange) {
    EXPECT_EQ(outcomeOf([this] {
                  std::ifstream(path_).get();
                  ::chmod(path_.c_str(), 0600);
                  std::filesystem::create_hard_link(path_, files_.path() / "second name");
              }).substr(0, 4),
              "link");
}

TEST_F(ChangingFileTest, ShrinkingIsAnError) {
    outcomeOf([this] { std::filesystem::resize_file(path_, largeSize - 1); });
    expectChangeSeen();
}

TEST_F(ChangingFileTest, ShrinkingToNothingIsAnError) {
    outcomeOf([this] { std::filesystem::resize_file(path_, 0); });
    expectChangeSeen();
}

TEST_F(ChangingFileTest, GrowingIsAnError) {
    outcomeOf([this] { std::ofstream(path_, std::ios::app) << "more"; });
    expectChangeSeen();
}

TEST_F(ChangingFileTest, WritingInPlaceIsAnError) {
    outcomeOf([this] { std::fstream(path_, std::ios::in | std::ios::out).seekp(7).put('y'); });
    expectChangeSeen();
}

TEST_F(ChangingFileTest, VanishingIsAnError) {
    outcomeOf([this] { std::filesystem::remove(path_); });
    expectChangeSeen();
}

TEST_F(ChangingFileTest, BeingReplacedIsAnError) {
    outcomeOf([this] { std::filesystem::rename(files_.file("new", std::string(largeSize, 'z')), path_); });
    expectChangeSeen();
}

/// A file that changes between the request for the upload and its opening.
class FileBeforeOpeningTest : public UploadTest {
protected:
    FileShareFailure failureAfter(const std::function<void(const std::filesystem::path&)>& change) {
        sessions_ = std::make_unique<CurlUrlSessions>(queue_, proxies_, [change](const auto& path) {
            change(path);
            return openUploadFile(path);
        });
        const auto begin = Clock::now();
        outcome("http://127.0.0.1:1", files_.url("file.bin", "content"));
        EXPECT_LT(Clock::now() - begin, 5s);
        return failure();
    }
};

TEST_F(FileBeforeOpeningTest, VanishedItCannotBeRead) {
    EXPECT_EQ(failureAfter([](const auto& path) { std::filesystem::remove(path); }),
              FileShareFailure(core::FileShareError::unreadableFile));
}

TEST_F(FileBeforeOpeningTest, OfAnotherSizeItHasChanged) {
    EXPECT_EQ(failureAfter([](const auto& path) { std::ofstream(path, std::ios::app) << "more"; }),
              FileShareFailure(UrlError::fileChanged));
}

TEST_F(FileBeforeOpeningTest, APipeInItsPlaceDoesNotBlock) {
    EXPECT_EQ(failureAfter([](const auto& path) {
                  std::filesystem::remove(path);
                  ::mkfifo(path.c_str(), 0600);
              }),
              FileShareFailure(core::FileShareError::unreadableFile));
}

#ifdef F_SETLEASE
TEST_F(FileBeforeOpeningTest, ALeaseOnItDoesNotBlock) {
    const int held = ::open(files_.file("file.bin", "content").c_str(), O_RDWR);
    ::signal(SIGIO, SIG_IGN);
    const auto failed = failureAfter([&](const auto&) { ASSERT_EQ(::fcntl(held, F_SETLEASE, F_WRLCK), 0); });
    EXPECT_EQ(failed, FileShareFailure(core::FileShareError::unreadableFile));
    ::close(held);
}
#endif

/// A disk that does not answer.
class StuckDisk {
public:
    void release() {
        const std::lock_guard lock(mutex_);
        isReleased_ = true;
        changed_.notify_all();
    }

    void wait() {
        std::unique_lock lock(mutex_);
        isWaiting_ = true;
        changed_.wait(lock, [this] { return isReleased_; });
    }

    bool isWaiting() {
        const std::lock_guard lock(mutex_);
        return isWaiting_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isReleased_ = false;
    bool isWaiting_ = false;
};

class StuckSource final : public UploadSource {
public:
    explicit StuckSource(std::shared_ptr<StuckDisk> disk) : disk_(std::move(disk)) {}

    [[nodiscard]] std::int64_t size() const override { return 7; }

    tl::expected<std::size_t, UrlError> read(std::span<std::byte> /*buffer*/) override {
        disk_->wait();
        return tl::unexpected(UrlError::cannotReadFile);
    }

    void rewind() override {}

    [[nodiscard]] bool isUnchanged() const override { return true; }

private:
    std::shared_ptr<StuckDisk> disk_;
};

class StuckFileTest : public UploadTest {
protected:
    void SetUp() override { ASSERT_TRUE(server_) << server_.error(); }

    void TearDown() override { disk_->release(); }

    void stickInRead() {
        sessions_ = std::make_unique<CurlUrlSessions>(queue_, proxies_, [disk = disk_](const auto&) -> OpenedSource {
            return std::make_unique<StuckSource>(disk);
        });
    }

    void stickInOpen() {
        sessions_ = std::make_unique<CurlUrlSessions>(queue_, proxies_, [disk = disk_](const auto& path) {
            disk->wait();
            return openUploadFile(path);
        });
    }

    std::shared_ptr<StuckDisk> disk_ = std::make_shared<StuckDisk>();
    tl::expected<servers::FaultServer, std::string> server_ = servers::FaultServer::start();
};

TEST_F(StuckFileTest, TimesOutThoughItsThreadIsStuck) {
    limits_ = {.silence = 300ms, .whole = 60s};
    stickInRead();
    EXPECT_EQ(outcome(server_->address("good"), files_.url("file.bin", "content")),
              "The upload timed out. You can try again.");
    stickInOpen();
    EXPECT_EQ(outcome(server_->address("good"), files_.url("file.bin", "content")),
              "The upload timed out. You can try again.");
}

TEST_F(StuckFileTest, IsCancelledAtOnceThoughItsThreadIsStuck) {
    stickInRead();
    start(server_->address("good"), files_.url("file.bin", "content"));
    ASSERT_TRUE(runUntil([this] { return disk_->isWaiting(); }));
    const auto begin = Clock::now();
    upload_->cancel();
    EXPECT_LT(Clock::now() - begin, 200ms);
    EXPECT_EQ(failure(), FileShareFailure(UrlError::cancelled));
}

TEST_F(StuckFileTest, DoesNotHoldUpTheEndOfTheProgram) {
    stickInRead();
    start(server_->address("good"), files_.url("file.bin", "content"));
    ASSERT_TRUE(runUntil([this] { return disk_->isWaiting(); }));
    upload_.reset();
    const auto begin = Clock::now();
    sessions_.reset();
    EXPECT_LT(Clock::now() - begin, 3s);
}

} // namespace
} // namespace quillane
