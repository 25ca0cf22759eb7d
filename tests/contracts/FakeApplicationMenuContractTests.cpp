// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/ApplicationMenuContract.hpp"
#include "contracts/FakeDriver.hpp"
#include "fakes/FakeApplicationMenu.hpp"

#include <algorithm>

namespace quillane {
namespace {

class FakeApplicationMenuDriver {
public:
    std::unique_ptr<ApplicationMenu>& menu() { return menu_; }

    void press(char key) {
        if (menu_) {
            fake().press(std::string_view(&key, 1));
        }
    }

    [[nodiscard]] bool isWindowOpen() const {
        return !menu_ || std::ranges::count(fake().standardCommands(), StandardCommand::close) == 0;
    }

    [[nodiscard]] LayoutDirection direction() const { return fake().direction(); }

    static bool waitUntil(const std::function<bool()>& condition) { return testing::askAgain(condition); }

private:
    [[nodiscard]] fakes::FakeApplicationMenu& fake() const { return static_cast<fakes::FakeApplicationMenu&>(*menu_); }

    std::unique_ptr<ApplicationMenu> menu_ = std::make_unique<fakes::FakeApplicationMenu>();
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ApplicationMenuContract, FakeApplicationMenuDriver);
} // namespace testing
} // namespace quillane
