// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/UrlSessionContract.hpp"
#include "platform/common/UploadTest.hpp"
#include "servers/FaultServer.hpp"

#include <array>

namespace quillane {
namespace {

class CurlUrlSessionDriver {
public:
    core::UrlSessionFactory factory() { return sessions_.factory(); }

    [[nodiscard]] core::Url address(testing::UrlServer server) const {
        constexpr std::array faults{"good", "status-500", "redirect-301", "silent"};
        const auto address = server_.value().address(faults.at(static_cast<std::size_t>(server))) + "/file.txt";
        return core::UrlComponents::parse(address).value().url().value();
    }

    std::filesystem::path file(const std::string& content) { return files_.file("file.txt", content); }

    static bool waitUntil(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!condition() && std::chrono::steady_clock::now() < end) {
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
        }
        return condition();
    }

private:
    int argc_ = 1;
    std::string name_ = "tests";
    char* argv_ = name_.data();
    QCoreApplication application_{argc_, &argv_};
    tl::expected<servers::FaultServer, std::string> server_ = servers::FaultServer::start();
    live::TemporaryFolder files_;
    QtMainQueue queue_;
    CurlUrlSessions sessions_{queue_, std::make_shared<fakes::FakeProxySettings>()};
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Curl, UrlSessionContract, CurlUrlSessionDriver);
} // namespace testing
} // namespace quillane
