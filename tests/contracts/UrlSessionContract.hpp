// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/fileshare/UrlSession.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace quillane::testing {

/// What a server does with an upload.
enum class UrlServer {
    accepts,   ///< takes it all and answers 201 with a text
    refuses,   ///< 500
    redirects, ///< 301 to another address
    isSilent,  ///< never answers
};

/// What every UrlSession promises. The driver is constructed for each test and has:
///
///     core::UrlSessionFactory factory();
///     core::Url address(UrlServer);            // of a server that does so
///     std::filesystem::path file(std::string); // a file with this content
///     bool waitUntil(std::function<bool()>);   // lets the world go on; false when it takes too long
template <typename Driver>
class UrlSessionContract : public ::testing::Test {
protected:
    /// Records its calls, and whether they came inside another call.
    class Delegate final : public core::UrlSessionDelegate {
    public:
        void didSendBodyData(std::int64_t count, std::int64_t /*expected*/) override { sent = checked(count); }

        void didReceiveData(std::span<const std::byte> data) override {
            answer += std::string(reinterpret_cast<const char*>(data.data()), checked(data.size()));
        }

        void redirectRequested() override { redirects += checked(1); }

        void didComplete(std::optional<core::UrlResponse> head, std::optional<core::UrlError> failure) override {
            completions += checked(1);
            response = head;
            error = failure;
            if (onComplete) {
                onComplete();
            }
        }

        bool inCall = false;
        std::int64_t sent = 0;
        std::string answer;
        int redirects = 0;
        int completions = 0;
        std::optional<core::UrlResponse> response;
        std::optional<core::UrlError> error;
        std::function<void()> onComplete;

    private:
        template <typename Value>
        Value checked(Value value) const {
            EXPECT_FALSE(inCall) << "told inside a call";
            EXPECT_EQ(completions, 0) << "told after the end";
            return value;
        }
    };

    void upload(UrlServer server) {
        core::UrlRequest request{.url = driver.address(server), .method = "PUT"};
        session = driver.factory()({}, delegate);
        call([&] { session->upload(request, driver.file(content)); });
    }

    void call(const std::function<void()>& action) {
        delegate.inCall = true;
        action();
        delegate.inCall = false;
    }

    [[nodiscard]] bool waitForEnd() {
        return driver.waitUntil([&] { return delegate.completions > 0; });
    }

    void letTimePass() {
        int turns = 0;
        EXPECT_TRUE(driver.waitUntil([&] { return ++turns > 20; }));
    }

    const std::string content = "the content of the file";
    Delegate delegate; // before the session, which calls it
    Driver driver;
    std::unique_ptr<core::UrlSession> session;
};

TYPED_TEST_SUITE_P(UrlSessionContract);

TYPED_TEST_P(UrlSessionContract, AnUploadThatIsTakenEndsWithItsAnswer) {
    this->upload(UrlServer::accepts);
    ASSERT_TRUE(this->waitForEnd());
    EXPECT_EQ(this->delegate.sent, static_cast<std::int64_t>(this->content.size()));
    EXPECT_EQ(this->delegate.response, core::UrlResponse{201});
    EXPECT_EQ(this->delegate.error, std::nullopt);
    EXPECT_FALSE(this->delegate.answer.empty());
    EXPECT_EQ(this->delegate.redirects, 0);
    this->letTimePass();
    EXPECT_EQ(this->delegate.completions, 1);
}

TYPED_TEST_P(UrlSessionContract, AnotherStatusIsAnAnswerToo) {
    this->upload(UrlServer::refuses);
    ASSERT_TRUE(this->waitForEnd());
    EXPECT_EQ(this->delegate.response, core::UrlResponse{500});
    EXPECT_EQ(this->delegate.error, std::nullopt);
}

TYPED_TEST_P(UrlSessionContract, ARedirectIsReportedAndNotFollowed) {
    this->upload(UrlServer::redirects);
    ASSERT_TRUE(this->waitForEnd());
    EXPECT_EQ(this->delegate.redirects, 1);
    EXPECT_EQ(this->delegate.response, core::UrlResponse{301});
}

TYPED_TEST_P(UrlSessionContract, ACancelledOneCompletesOnceAsCancelled) {
    this->upload(UrlServer::isSilent);
    this->letTimePass();
    EXPECT_EQ(this->delegate.completions, 0);
    this->call([&] { this->session->cancelTask(); });
    ASSERT_TRUE(this->waitForEnd());
    EXPECT_EQ(this->delegate.error, core::UrlError::cancelled);
    EXPECT_EQ(this->delegate.response, std::nullopt);
    this->call([&] { this->session->cancelTask(); });
    this->letTimePass();
    EXPECT_EQ(this->delegate.completions, 1);
}

TYPED_TEST_P(UrlSessionContract, ADestroyedSessionReportsNothing) {
    this->upload(UrlServer::accepts);
    this->call([&] { this->session.reset(); });
    this->letTimePass();
    EXPECT_EQ(this->delegate.completions, 0);
    EXPECT_EQ(this->delegate.sent, 0);
}

TYPED_TEST_P(UrlSessionContract, TheEndMayDestroyTheSession) {
    this->delegate.onComplete = [this] { this->session.reset(); };
    this->upload(UrlServer::accepts);
    ASSERT_TRUE(this->waitForEnd());
    EXPECT_EQ(this->session, nullptr);
    EXPECT_EQ(this->delegate.response, core::UrlResponse{201});
}

REGISTER_TYPED_TEST_SUITE_P(UrlSessionContract, AnUploadThatIsTakenEndsWithItsAnswer, AnotherStatusIsAnAnswerToo,
                            ARedirectIsReportedAndNotFollowed, ACancelledOneCompletesOnceAsCancelled,
                            ADestroyedSessionReportsNothing, TheEndMayDestroyTheSession);

} // namespace quillane::testing
