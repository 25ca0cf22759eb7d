// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/FakeDriver.hpp"
#include "contracts/InputSourcesContract.hpp"
#include "fakes/FakeDesktop.hpp"
#include "support/KeyboardLayouts.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

using namespace fakes;

class FakeInputSourcesDriver : public testing::FakeDriver {
public:
    FakeInputSourcesDriver() {
        desktop_.withInputSources({english(), hebrew(), arabic()});
        desktop_.inputSources.setLayout(english().id, testing::englishLayout());
        desktop_.inputSources.setLayout(hebrew().id, testing::hebrewLayout());
        desktop_.inputSources.setLayout(arabic().id, testing::arabicLayout());
    }

    InputSources& sources() { return desktop_.inputSources; }

    void switchFromOutside(const std::string& id) {
        for (const auto& source : desktop_.inputSources.enabled().value_or(std::vector<InputSource>())) {
            if (source.id == id) {
                desktop_.inputSources.switchFromOutside(source);
            }
        }
    }
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, InputSourcesContract, FakeInputSourcesDriver);
} // namespace testing
} // namespace quillane
