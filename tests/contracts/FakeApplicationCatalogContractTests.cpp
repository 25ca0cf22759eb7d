// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/ApplicationCatalogContract.hpp"
#include "fakes/FakeApplicationCatalog.hpp"
#include "fakes/FakeMainQueue.hpp"

namespace quillane {
namespace {

class FakeApplicationCatalogDriver {
public:
    static constexpr auto installed = "com.example.mail";
    static constexpr auto running = "com.example.editor";

    FakeApplicationCatalogDriver() {
        auto made = std::make_unique<fakes::FakeApplicationCatalog>(queue_);
        made->applications = {{installed, "Mail"}, {running, "Editor", true}};
        catalog_ = std::move(made);
    }

    std::unique_ptr<ApplicationCatalog>& catalog() { return catalog_; }

    bool waitUntil(const std::function<bool()>& condition) {
        for (int turn = 0; turn < 100 && !condition(); ++turn) {
            queue_.runPosted();
        }
        return condition();
    }

private:
    fakes::FakeMainQueue queue_;
    std::unique_ptr<ApplicationCatalog> catalog_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ApplicationCatalogContract, FakeApplicationCatalogDriver);
} // namespace testing
} // namespace quillane
