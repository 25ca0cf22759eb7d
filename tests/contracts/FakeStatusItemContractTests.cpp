// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "contracts/StatusItemContract.hpp"
#include "fakes/FakeStatusItem.hpp"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillane {

namespace {

class FakeStatusItemDriver {
public:
    StatusItem& item() { return fake_; }

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> result;
        std::ranges::transform(fake_.rows(), std::back_inserter(result), &MenuRow::title);
        return result;
    }

    [[nodiscard]] bool isChecked(const std::string& title) const { return fake_.row(title).checked; }

    void refuseNotices() { fake_.setRefusesNotices(); }

    void waitForAnswers() { fake_.failNotices(); }

    void choose(const std::string& title) {
        try {
            fake_.click(title);
        } catch (const std::logic_error&) { // it refuses what a menu would not let happen
        }
    }

private:
    fakes::FakeStatusItem fake_;
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, StatusItemContract, FakeStatusItemDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, StatusItemNoticeContract, FakeStatusItemDriver);

} // namespace testing

} // namespace quillane
