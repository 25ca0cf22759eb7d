// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/ServicesMenuContract.hpp"
#include "fakes/FakeServicesMenu.hpp"

namespace quillane {
namespace {

class FakeServicesMenuDriver {
public:
    ServicesMenu& menu() { return fake_; }

    [[nodiscard]] bool isOffered() const { return fake_.isOffered(); }

    std::optional<std::string> choose(const std::vector<std::string>& urls) { return fake_.chooseShare(urls); }

private:
    fakes::FakeServicesMenu fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ServicesMenuContract, FakeServicesMenuDriver);
} // namespace testing
} // namespace quillane
