// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/UploadTest.hpp"
#include "servers/FaultServer.hpp"

#include <ostream>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using servers::FaultServer;

enum class Sizes { both, large };

/// The server's behaviour and the expected end of the upload. "HOST" stands for the server's host and port, "FILE" for
/// the name.
struct FaultRow {
    const char* fault;
    const char* outcome;
    Sizes sizes = Sizes::both;
};

std::ostream& operator<<(std::ostream& stream, const FaultRow& row) {
    return stream << row.fault;
}

constexpr auto accepted = "link http://HOST/FAULT/token/FILE";
constexpr auto noLink = "The service did not return a valid link. You can try again.";
constexpr auto timedOut = "The upload timed out. You can try again.";
constexpr auto other = "Could not upload the file. Check your internet connection and try again.";
constexpr auto tooLarge = "The file exceeds the size allowed by HOST/FAULT.";

constexpr FaultRow rows[] = {
    // Right, if in an unusual way
    {"good", accepted},
    {"answer-8192", accepted},
    {"chunked", accepted},
    {"until-close", accepted},
    {"cookie", accepted},
    {"ignores-expect", accepted},
    {"refuses-expect", accepted},
    {"interim", accepted},
    // Redirects of every kind
    {"redirect-300", noLink},
    {"redirect-301", noLink},
    {"redirect-302", noLink},
    {"redirect-303", noLink},
    {"redirect-307", noLink},
    {"redirect-308", noLink},
    {"redirect-relative", noLink},
    {"redirect-other-port", noLink},
    {"redirect-early", noLink},
    {"redirect-before-endless-answer", noLink},
    {"redirect-without-location", "Upload failed. The server returned status 302."},
    // Answers that are not a link
    {"answer-8193", noLink},
    {"endless", noLink},
    {"endless-chunks", noLink},
    {"two-lines", noLink},
    {"invalid-utf8", noLink},
    {"wrong-host", noLink},
    {"wrong-port", noLink},
    {"wrong-scheme", noLink},
    {"outside", noLink},
    {"query", noLink},
    {"fragment", noLink},
    {"empty", noLink},
    {"html", noLink},
    {"status-204", noLink},
    // Other statuses
    {"status-304", "Upload failed. The server returned status 304."},
    {"status-401", "Upload failed. The server returned status 401."},
    {"status-404", "Upload failed. The server returned status 404."},
    {"status-500", "Upload failed. The server returned status 500."},
    {"status-507", "Upload failed. The server returned status 507."},
    {"switching", "Upload failed. The server returned status 101."},
    {"long-500", noLink}, // the bound comes before the status
    {"status-413", tooLarge},
    {"early-413", tooLarge},
    {"reset-413", tooLarge},
    {"cut-413", tooLarge},
    // Connections that end
    {"early-close", other},
    {"close-after-body", other},
    {"cut-answer", other},
    {"cut-head", other},
    {"only-100", other},
    {"reset-in-body", other},
    {"reset-at-once", other},
    {"early-200", other, Sizes::large}, // content without the file
    {"early-200-silent", other, Sizes::large},
    // What is not HTTP, or without end
    {"garbage", other},
    {"no-head", other},
    {"bad-status", other},
    {"wrong-version", other},
    {"bad-length", other},
    {"endless-head", other},
    {"endless-1xx", other},
};

class FaultsTest : public UploadTest, public testing::WithParamInterface<FaultRow> {
protected:
    void SetUp() override { ASSERT_TRUE(server_) << server_.error(); }

    [[nodiscard]] std::string expected(std::string text, const std::string& file) const {
        const auto fill = [&](const std::string& place, const std::string& value) {
            if (const auto at = text.find(place); at != std::string::npos) {
                text.replace(at, place.size(), value);
            }
        };
        fill("HOST", "127.0.0.1:" + std::to_string(server_->port()));
        fill("FAULT", GetParam().fault);
        fill("FILE", file);
        return text;
    }

    void expectNoRequestElsewhere() {
        EXPECT_TRUE(server_->events("head", "target").empty());
        for (const auto& entry : server_->log()) {
            EXPECT_NE(entry.value("event", ""), "other");
        }
    }

    tl::expected<FaultServer, std::string> server_ = FaultServer::start();
};

TEST_P(FaultsTest, EndInTheRightMessage) {
    const auto& row = GetParam();
    const auto address = server_->address(row.fault);
    if (row.sizes == Sizes::both) {
        EXPECT_EQ(outcome(address, files_.url("small.txt", "content")), expected(row.outcome, "small.txt"));
        EXPECT_EQ(results_.size(), 1U);
    }
    // Larger than what libcurl sends without asking first, and than what the kernel buffers.
    EXPECT_EQ(outcome(address, files_.url("large.bin", std::string(12U << 20U, 'x'))),
              expected(row.outcome, "large.bin"));
    EXPECT_EQ(results_.size(), 1U);
    expectNoRequestElsewhere();
}

INSTANTIATE_TEST_SUITE_P(Server, FaultsTest, testing::ValuesIn(rows), [](const auto& instance) {
    std::string name = instance.param.fault;
    std::erase(name, '-');
    return name;
});

class SilenceTest : public FaultsTest {
protected:
    void SetUp() override {
        FaultsTest::SetUp();
        limits_ = {.silence = 400ms, .whole = 3s};
    }
};

TEST_P(SilenceTest, TimesOut) {
    const auto begin = Clock::now();
    EXPECT_EQ(outcome(server_->address(GetParam().fault), files_.url("large.bin", std::string(64U << 20U, 'x'))),
              GetParam().outcome);
    EXPECT_GE(Clock::now() - begin, 400ms);
    EXPECT_EQ(results_.size(), 1U);
    EXPECT_EQ(failure(), core::FileShareFailure(core::UrlError::timedOut));
}

INSTANTIATE_TEST_SUITE_P(Server, SilenceTest,
                         testing::Values(FaultRow{"silent", timedOut}, FaultRow{"deaf", timedOut},
                                         FaultRow{"silent-in-answer", timedOut}),
                         [](const auto& instance) {
                             std::string name = instance.param.fault;
                             std::erase(name, '-');
                             return name;
                         });

class CurlUrlSessionsFaultsTest : public UploadTest {
protected:
    void SetUp() override { ASSERT_TRUE(server_) << server_.error(); }

    tl::expected<FaultServer, std::string> server_ = FaultServer::start();
};

TEST_F(CurlUrlSessionsFaultsTest, AServerThatNeverEndsTimesOutInAll) {
    limits_ = {.silence = 10s, .whole = 1s};
    const auto begin = Clock::now();
    EXPECT_EQ(outcome(server_->address("dripping")), timedOut);
    EXPECT_GE(Clock::now() - begin, 1s);
    EXPECT_LT(Clock::now() - begin, 8s);
}

TEST_F(CurlUrlSessionsFaultsTest, SlowDataDoesNotTimeOut) {
    limits_ = {.silence = 300ms, .whole = 1500ms};
    const auto begin = Clock::now();
    EXPECT_EQ(outcome(server_->address("dripping")), timedOut);
    EXPECT_GE(Clock::now() - begin, 1500ms);
}

TEST_F(CurlUrlSessionsFaultsTest, TheRequestHasOnlyTheHeadersOfTheProtocol) {
    EXPECT_EQ(outcome(server_->address("good")).substr(0, 4), "link");
    auto headers = server_->events("head", "good").at(0).at("headers");
    EXPECT_EQ(headers.value("content-type", ""), "application/octet-stream");
    EXPECT_EQ(headers.value("content-length", ""), std::to_string(content_.size()));
    for (const auto* name : {"content-type", "content-length", "host", "accept"}) {
        headers.erase(name);
    }
    EXPECT_TRUE(headers.empty()) << headers;
}

TEST_F(CurlUrlSessionsFaultsTest, NothingIsKeptFromOneUploadToTheNext) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(outcome(server_->address("cookie")).substr(0, 4), "link");
    }
    const auto heads = server_->events("head", "cookie");
    ASSERT_EQ(heads.size(), 2U);
    EXPECT_FALSE(heads[1].at("headers").contains("cookie"));
}

TEST_F(CurlUrlSessionsFaultsTest, NobodyListeningIsAnError) {
    EXPECT_EQ(outcome("http://127.0.0.1:1"), other);
    EXPECT_EQ(failure(), core::FileShareFailure(core::UrlError::cannotConnectToHost));
}

TEST_F(CurlUrlSessionsFaultsTest, AnUnknownHostIsAnError) {
    EXPECT_EQ(outcome("https://no-such-host.invalid"), other);
    EXPECT_EQ(failure(), core::FileShareFailure(core::UrlError::cannotFindHost));
}

TEST_F(CurlUrlSessionsFaultsTest, AHostThatCouldBeReadAsAnotherOneIsNotContacted) {
    // "0177.0.0.1" passes as a name, and "127.1" as one that is not local; a resolver reads both as 127.0.0.1.
    const auto port = std::to_string(server_->port());
    for (const auto& host : {"2130706433", "0x7f000001", "017700000001", "127.000.000.001"}) {
        EXPECT_EQ(outcome("http://" + (host + (':' + port)) + "/good"), other) << host;
        EXPECT_EQ(failure(), core::FileShareFailure(core::UrlError::cannotFindHost)) << host;
    }
    EXPECT_TRUE(server_->log().empty());
}

TEST_F(CurlUrlSessionsFaultsTest, TheProxyOfTheSystemIsAsked) {
    useProxy("http://127.0.0.1:" + std::to_string(server_->port()));
    EXPECT_EQ(outcome("http://nas:1234/good"), "link http://nas:1234/good/token/file.txt");
    EXPECT_EQ(proxies_->asked(), std::vector<std::string>{"http://nas:1234/good/file.txt"});
}

TEST_F(CurlUrlSessionsFaultsTest, TheProxyOfTheEnvironmentIsAskedWhenTheSystemHasNoSay) {
    useProxy(std::nullopt);
    ::setenv("http_proxy", ("http://127.0.0.1:" + std::to_string(server_->port())).c_str(), 1);
    EXPECT_EQ(outcome("http://nas:1234/good"), "link http://nas:1234/good/token/file.txt");
    useProxy("");
    EXPECT_EQ(outcome("http://no-such-host:1/good"), other);
    ::unsetenv("http_proxy");
}

TEST_F(CurlUrlSessionsFaultsTest, ZoneOfAnAddressIsForThisMachineOnly) {
    useProxy("http://127.0.0.1:" + std::to_string(server_->port()));
    EXPECT_EQ(outcome("http://[fe80::1%25lo]:1234/good"), "link http://[fe80::1]:1234/good/token/file.txt");
    EXPECT_EQ(server_->events("head", "good").at(0).at("headers").at("host"), "[fe80::1]:1234");
}

TEST_F(CurlUrlSessionsFaultsTest, CancellingAtAnyMomentGivesOneResult) {
    const auto file = files_.url("large.bin", std::string(4U << 20U, 'x'));
    int links = 0;
    for (int round = 0; round < 60; ++round) {
        start(server_->address("good"), file);
        runUntil([] { return false; }, std::chrono::milliseconds(round / 2));
        upload_->cancel();
        ASSERT_EQ(results_.size(), 1U);
        links += results_[0].has_value() ? 1 : 0;
        if (!results_[0]) {
            EXPECT_EQ(failure(), core::FileShareFailure(core::UrlError::cancelled));
        }
    }
    runUntil([] { return false; }, 50ms);
    EXPECT_EQ(results_.size(), 1U);
    EXPECT_LT(links, 60);
}

TEST_F(CurlUrlSessionsFaultsTest, CancellingWhileTheServerIsSilentHangsUp) {
    start(server_->address("silent"), files_.url("file.txt"));
    ASSERT_TRUE(runUntil([this] { return !server_->events("head", "silent").empty(); }));
    upload_->cancel();
    EXPECT_TRUE(runUntil([this] { return !server_->events("end", "silent").empty(); }));
}

TEST_F(CurlUrlSessionsFaultsTest, DestroyingEverythingWhileItRunsIsSafe) {
    const auto file = files_.url("large.bin", std::string(4U << 20U, 'x'));
    for (int round = 0; round < 20; ++round) {
        start(server_->address("good"), file);
        runUntil([] { return false; }, std::chrono::milliseconds(round));
        const bool wasFinished = isFinished();
        upload_.reset();
        useProxy("");
        EXPECT_EQ(isFinished(), wasFinished);
    }
}

TEST_F(CurlUrlSessionsFaultsTest, UploadsRunSideBySide) {
    const auto file = files_.url("file.txt");
    const auto silent = core::FileShareServer::validating(server_->address("silent")).value();
    core::FileShareUpload waiting(sessions_->factory(), disk_.examiner());
    std::vector<Result> waitingResults;
    waiting.start(file, silent, {}, nullptr, [&](const Result& result) { waitingResults.push_back(result); });
    EXPECT_EQ(outcome(server_->address("good"), file).substr(0, 4), "link");
    EXPECT_TRUE(waitingResults.empty());
    waiting.cancel();
    EXPECT_EQ(waitingResults.size(), 1U);
}

TEST_F(CurlUrlSessionsFaultsTest, ProgressRisesToOneAtMostTenTimesASecond) {
    const auto main = std::this_thread::get_id();
    const auto file = files_.url("large.bin", std::string(48U << 20U, 'x'));
    upload_ = std::make_unique<core::FileShareUpload>(sessions_->factory(), disk_.examiner());
    const auto begin = Clock::now();
    upload_->start(
        file, core::FileShareServer::validating(server_->address("good")).value(), {},
        [&](double fraction) {
            EXPECT_EQ(std::this_thread::get_id(), main);
            fractions_.push_back(fraction);
        },
        [&](const Result& result) {
            EXPECT_EQ(std::this_thread::get_id(), main);
            results_.push_back(result);
        });
    ASSERT_TRUE(runUntil([this] { return isFinished(); }));
    const auto tenths = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin).count() / 100;
    ASSERT_FALSE(fractions_.empty());
    EXPECT_TRUE(std::ranges::is_sorted(fractions_));
    EXPECT_EQ(fractions_.back(), 1.0);
    EXPECT_LE(static_cast<long>(fractions_.size()), tenths + 2);
}

} // namespace
} // namespace quillane
