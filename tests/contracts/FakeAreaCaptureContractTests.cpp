// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/AreaCaptureContract.hpp"
#include "fakes/FakeAreaCapture.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace quillane {
namespace {

using namespace fakes;

class FakeAreaCaptureDriver {
public:
    AreaCapture& capture() { return capture_; }

    [[nodiscard]] bool isSelecting() const { return capture_.selecting().has_value(); }

    void cancel() { capture_.end(); }

    void keepKeyboard() { keeps_ = true; }

    bool waitUntil(const std::function<bool()>& condition) {
        if (keeps_ && isSelecting()) {
            capture_.keepOut();
        }
        return condition();
    }

private:
    FakeAreaCapture capture_;
    bool keeps_ = false;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, AreaCaptureContract, FakeAreaCaptureDriver);
} // namespace testing
} // namespace quillane
