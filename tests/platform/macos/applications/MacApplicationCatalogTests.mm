// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/applications/MacApplicationCatalog.hpp"

#include "contracts/ApplicationCatalogContract.hpp"
#include "platform/macos/MacDriver.hpp"

namespace quillane {
namespace {

/// The user's own applications: the Finder always runs, and Chess must not.
class MacApplicationCatalogDriver : public testing::MacDriver {
public:
    static constexpr auto installed = "com.apple.Chess";
    static constexpr auto running = "com.apple.finder";

    std::unique_ptr<ApplicationCatalog>& catalog() { return catalog_; }

private:
    std::unique_ptr<ApplicationCatalog> catalog_ = std::make_unique<MacApplicationCatalog>();
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ApplicationCatalogContract, MacApplicationCatalogDriver);
} // namespace testing
} // namespace quillane
