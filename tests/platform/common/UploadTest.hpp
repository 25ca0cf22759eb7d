// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileShareUpload.hpp"
#include "fakes/FakeFileExaminer.hpp"
#include "fakes/FakeProxySettings.hpp"
#include "platform/common/curl/CurlUrlSessions.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "support/TemporaryFolder.hpp"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quillane {

/// Uploads over real sessions, run to their ends on the event loop.
class UploadTest : public ::testing::Test {
protected:
    using Clock = std::chrono::steady_clock;
    using Result = core::FileShareUpload::Result;

    static constexpr std::chrono::seconds timeout{20};

    /// Runs the event loop until the condition holds; false when it does not in time.
    static bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = timeout) {
        const auto deadline = Clock::now() + limit;
        while (!condition()) {
            if (Clock::now() > deadline) {
                return false;
            }
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
        }
        return true;
    }

    void start(const std::string& address, const core::Url& file) {
        upload_ = std::make_unique<core::FileShareUpload>(sessions_->factory(), disk_.examiner(), limits_);
        fractions_.clear();
        results_.clear();
        upload_->start(
            file, core::FileShareServer::validating(address).value(), configuration_,
            [this](double fraction) { fractions_.push_back(fraction); },
            [this](const Result& result) { results_.push_back(result); });
    }

    [[nodiscard]] bool isFinished() const { return !results_.empty(); }

    /// Uploads the file and returns how it ended: "link URL", or the English message of the failure.
    std::string outcome(const std::string& address, const core::Url& file) {
        start(address, file);
        if (!runUntil([this] { return isFinished(); })) {
            return "no result";
        }
        return describe(results_.front(), address);
    }

    std::string outcome(const std::string& address) { return outcome(address, files_.url("file.txt", content_)); }

    static std::string describe(const Result& result, const std::string& address) {
        if (result) {
            return "link " + result->absoluteString();
        }
        return message(result.error(), core::FileShareServer::validating(address).value(), core::Desktop::macOS)
            .rendered(core::AppLanguage::english);
    }

    [[nodiscard]] core::FileShareFailure failure() const { return results_.at(0).error(); }

    void useProxy(std::optional<std::string> proxy) {
        proxies_ = std::make_shared<fakes::FakeProxySettings>(std::move(proxy));
        sessions_ = std::make_unique<CurlUrlSessions>(queue_, proxies_);
    }

private:
    int argc_ = 1;
    std::string name_ = "tests";
    char* argv_ = name_.data();
    QCoreApplication application_{argc_, &argv_};

protected:
    live::TemporaryFolder files_;
    std::string content_ = "the content of the file";
    QtMainQueue queue_;
    std::shared_ptr<fakes::FakeProxySettings> proxies_ = std::make_shared<fakes::FakeProxySettings>();
    std::unique_ptr<CurlUrlSessions> sessions_ = std::make_unique<CurlUrlSessions>(queue_, proxies_);
    fakes::FakeFileExaminer disk_;
    core::FileShareUpload::Limits limits_;
    core::UrlSessionConfiguration configuration_;
    std::unique_ptr<core::FileShareUpload> upload_;
    std::vector<double> fractions_;
    std::vector<Result> results_;
};

} // namespace quillane
