// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/UrlSessionContract.hpp"
#include "fakes/FakeUrlSession.hpp"

#include <functional>

namespace quillane {
namespace {

/// Sessions to servers that do not exist: their effects happen between two checks of the condition.
class FakeUrlSessionDriver {
public:
    core::UrlSessionFactory factory() { return sessions_.factory(); }

    [[nodiscard]] static core::Url address(testing::UrlServer server) {
        const auto name = "https://" + std::to_string(static_cast<int>(server)) + ".example/file.txt";
        return core::UrlComponents::parse(name).value().url().value();
    }

    static std::filesystem::path file(const std::string& content) {
        return "/" + std::to_string(content.size()); // all that the server looks at
    }

    bool waitUntil(const std::function<bool()>& condition) {
        for (int turn = 0; turn < 100 && !condition(); ++turn) {
            for (const auto& transfer : sessions_.transfers) {
                serve(*transfer);
            }
        }
        return condition();
    }

private:
    static void serve(fakes::FakeUrlSessions::Transfer& transfer) {
        const auto goesTo = [&](testing::UrlServer server) { return transfer.request->url == address(server); };
        if (transfer.cancelled) {
            transfer.completeCancelled();
        } else if (goesTo(testing::UrlServer::accepts)) {
            const auto size = std::stoll(transfer.file.filename().string());
            transfer.send(size, size);
            transfer.receive("https://files.example/file.txt");
            transfer.complete(core::UrlResponse{201});
        } else if (goesTo(testing::UrlServer::refuses)) {
            transfer.complete(core::UrlResponse{500});
        } else if (goesTo(testing::UrlServer::redirects)) {
            transfer.redirect();
            transfer.complete(core::UrlResponse{301});
        }
    }

    fakes::FakeUrlSessions sessions_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, UrlSessionContract, FakeUrlSessionDriver);
} // namespace testing
} // namespace quillane
