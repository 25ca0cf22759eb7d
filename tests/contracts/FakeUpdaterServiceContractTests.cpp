// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/FakeDriver.hpp"
#include "contracts/UpdaterServiceContract.hpp"
#include "fakes/FakeUpdaterService.hpp"

namespace quillane {
namespace {

class FakeUpdaterServiceDriver {
public:
    UpdaterService& updater() { return fake_; }

    [[nodiscard]] int checks() const { return fake_.checks; }

    void finish(core::Date date) { fake_.finish(date); }

    static bool waitUntil(const std::function<bool()>& condition) { return testing::askAgain(condition); }

private:
    fakes::FakeUpdaterService fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, UpdaterServiceContract, FakeUpdaterServiceDriver);
} // namespace testing
} // namespace quillane
