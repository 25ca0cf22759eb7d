// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/UploadTest.hpp"
#include "servers/NginxServer.hpp"

#include <fstream>
#include <random>
#include <sstream>

#include <curl/curl.h>

namespace quillane {
namespace {

using servers::NginxServer;

/// A good server, as in practice.
class CurlUrlSessionsNginxTest : public UploadTest {
protected:
    static void SetUpTestSuite() {
        server_ = std::make_unique<tl::expected<NginxServer, std::string>>(NginxServer::start());
    }

    static void TearDownTestSuite() { server_.reset(); }

    void SetUp() override {
        ASSERT_TRUE(*server_) << server_->error();
        configuration_.certificateAuthorities = server().authority();
    }

    [[nodiscard]] static const NginxServer& server() { return **server_; }

    [[nodiscard]] static std::string http(const std::string& host = "127.0.0.1") {
        return "http://" + host + ':' + std::to_string(server().ports().http);
    }

    [[nodiscard]] static std::string https(const std::string& host = "127.0.0.1") {
        return "https://" + host + ':' + std::to_string(server().ports().https);
    }

    [[nodiscard]] static std::string http2(const std::string& host = "127.0.0.1") {
        return "https://" + host + ':' + std::to_string(server().ports().http2);
    }

    /// The contents behind the link.
    [[nodiscard]] static std::string fetch(const core::Url& link) {
        std::string content;
        CURL* easy = curl_easy_init();
        curl_easy_setopt(easy, CURLOPT_URL, link.absoluteString().c_str());
        curl_easy_setopt(easy, CURLOPT_PROXY, "");
        curl_easy_setopt(easy, CURLOPT_FAILONERROR, 1L);
        curl_easy_setopt(easy, CURLOPT_CAINFO, server().authority().c_str());
        curl_easy_setopt(easy, CURLOPT_WRITEDATA, &content);
        curl_easy_setopt(
            easy, CURLOPT_WRITEFUNCTION, +[](char* data, std::size_t size, std::size_t count, void* to) {
                static_cast<std::string*>(to)->append(data, size * count);
                return size * count;
            });
        const auto code = curl_easy_perform(easy);
        curl_easy_cleanup(easy);
        return code == CURLE_OK ? content : "cannot be fetched: " + std::string(curl_easy_strerror(code));
    }

    /// Uploads, and fetches the link that came back.
    [[nodiscard]] std::string roundTrip(const std::string& address, const core::Url& file) {
        const auto text = outcome(address, file);
        if (results_.empty() || !results_[0]) {
            return text;
        }
        EXPECT_TRUE(results_[0]->absoluteString().starts_with(address + '/'));
        return fetch(*results_[0]);
    }

    [[nodiscard]] std::string roundTrip(const std::string& address) {
        return roundTrip(address, files_.url("file.txt", content_));
    }

    static std::string randomContent(std::size_t size) {
        std::string content(size, ' ');
        std::mt19937 random(static_cast<unsigned>(size));
        for (auto& byte : content) {
            byte = static_cast<char>(random());
        }
        return content;
    }

private:
    static std::unique_ptr<tl::expected<NginxServer, std::string>> server_;
};

std::unique_ptr<tl::expected<NginxServer, std::string>> CurlUrlSessionsNginxTest::server_;

TEST_F(CurlUrlSessionsNginxTest, TakesFilesOverEveryKindOfConnection) {
    for (const auto& address : {http(), http("localhost"), http("[::1]"), https(), https("localhost"), http2(),
                                http2("localhost"), http2("[::1]")}) {
        EXPECT_EQ(roundTrip(address), content_) << address;
    }
    const auto log = server().accessLog();
    EXPECT_NE(log.find("HTTP/1.1 http PUT /file.txt 201"), std::string::npos) << log;
    EXPECT_NE(log.find("HTTP/1.1 https PUT /file.txt 201"), std::string::npos) << log;
    EXPECT_NE(log.find("HTTP/2.0 https PUT /file.txt 201"), std::string::npos) << log;
}

TEST_F(CurlUrlSessionsNginxTest, TakesFilesBelowAPath) {
    EXPECT_EQ(roundTrip(http() + "/drop/box"), content_);
    EXPECT_EQ(roundTrip(http2("[::1]") + "/drop/box"), content_);
}

TEST_F(CurlUrlSessionsNginxTest, NamesInEveryScriptComeThrough) {
    for (const auto* name : {"שלום עולם.txt", "ملف.txt", "😀.txt", "a b#c?d%e&f+g.txt", "e\u0301.txt", "100%25.txt",
                             "\xFF\xFE.bin", "a;b=c,d@e:f", "...", "\u202Efdp.exe"}) {
        EXPECT_EQ(roundTrip(http(), files_.url(name, content_)), content_) << name;
        EXPECT_EQ(roundTrip(http2(), files_.url(name, content_)), content_) << name;
    }
}

TEST_F(CurlUrlSessionsNginxTest, FilesOfAnySizeComeThroughWhole) {
    for (const std::size_t size : {0U, 1U, 65535U, 65536U, 1U << 20U, (1U << 20U) + 1, 2U << 20U, (21U << 20U) + 7}) {
        const auto content = randomContent(size);
        for (const auto& address : {http(), https(), http2()}) {
            EXPECT_TRUE(roundTrip(address, files_.url("file.bin", content)) == content) << address << ' ' << size;
        }
    }
}

TEST_F(CurlUrlSessionsNginxTest, ATooLargeFileIsRefusedWithTheServersName) {
    const auto file = files_.url("file.bin", std::string(30U << 20U, 'x'));
    for (const auto& address : {http() + "/small", https() + "/small", http2() + "/small"}) {
        EXPECT_EQ(outcome(address, file),
                  "The file exceeds the size allowed by " + address.substr(address.find("://") + 3) + '.');
    }
}

TEST_F(CurlUrlSessionsNginxTest, AnAuthorityThatTheSystemDoesNotKnowIsRefused) {
    configuration_.certificateAuthorities.reset();
    EXPECT_NE(roundTrip(https()), content_);
    EXPECT_EQ(failure(), core::FileShareFailure(core::UrlError::serverCertificateUntrusted));
    EXPECT_EQ(roundTrip(http2("localhost")),
              "Could not upload the file. Check your internet connection and try again.");
}

TEST_F(CurlUrlSessionsNginxTest, ACertificateForAnotherHostIsRefused) {
    EXPECT_NE(roundTrip(https("127.0.0.2")), content_);
    EXPECT_EQ(failure(), core::FileShareFailure(core::UrlError::serverCertificateUntrusted));
}

TEST_F(CurlUrlSessionsNginxTest, AServerWithoutTlsIsRefusedForHttps) {
    EXPECT_NE(roundTrip("https://127.0.0.1:" + std::to_string(server().ports().http)), content_);
    EXPECT_EQ(failure(), core::FileShareFailure(core::UrlError::secureConnectionFailed));
}

TEST_F(CurlUrlSessionsNginxTest, CancellingAnHttp2UploadGivesOneResult) {
    const auto file = files_.url("file.bin", std::string(20U << 20U, 'x'));
    for (int round = 0; round < 20; ++round) {
        start(http2(), file);
        runUntil([] { return false; }, std::chrono::milliseconds(round * 2));
        upload_->cancel();
        ASSERT_EQ(results_.size(), 1U);
    }
}

} // namespace
} // namespace quillane
