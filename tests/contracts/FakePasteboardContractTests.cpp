// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/FakeDriver.hpp"
#include "contracts/PasteboardContract.hpp"
#include "fakes/FakeDesktop.hpp"
#include "fakes/FakePasteboard.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

using namespace fakes;

class FakePasteboardDriver : public testing::FakeDriver {
public:
    Pasteboard& pasteboard() { return pasteboard_; }

    void copyText(std::string text) { pasteboard_.copyText(std::move(text)); }

    std::string fileUrl(const std::filesystem::path& file) { return pasteboard_.referenceTo(file); }

    void settle() {}

private:
    fakes::FakePasteboard pasteboard_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, PasteboardContract, FakePasteboardDriver);
} // namespace testing
} // namespace quillane
