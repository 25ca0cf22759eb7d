// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/InputSourcesContract.hpp"
#include "platform/linux/keyboard/X11Driver.hpp"

#include <algorithm>
#include <string>
#include <vector>

namespace quillane {
namespace {

class X11InputSourcesDriver : public testing::X11Driver {
public:
    X11InputSourcesDriver() { settle(); }

    InputSources& sources() { return *sources_; }

    void switchFromOutside(const std::string& id) {
        settle();
        const auto enabled = sources_->enabled().value_or(std::vector<InputSource>());
        const auto found = std::ranges::find(enabled, id, &InputSource::id);
        ASSERT_NE(found, enabled.end()) << id;
        user_.lockGroup(static_cast<unsigned>(found - enabled.begin()));
    }
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, InputSourcesContract, X11InputSourcesDriver);
} // namespace testing
} // namespace quillane
