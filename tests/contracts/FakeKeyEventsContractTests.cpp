// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/KeyEventsContract.hpp"
#include "fakes/FakeKeyEvents.hpp"

#include <algorithm>
#include <functional>

namespace quillane {
namespace {

class FakeKeyEventsDriver {
public:
    static constexpr core::KeyCode leftShift = 56;

    KeyEvents& events() { return fake_; }

    [[nodiscard]] static pid_t target() { return 1; }

    void holdShift() {
        fake_.setCurrentFlags(core::flags::shift | core::flags::leftShift);
        fake_.press(leftShift);
    }

    void releaseShift() {
        fake_.setCurrentFlags(0);
        fake_.release(leftShift);
    }

    static bool waitUntil(const std::function<bool()>& condition) { return condition(); }

    [[nodiscard]] std::size_t pressesOf(core::KeyCode keyCode) const {
        return static_cast<std::size_t>(
            std::ranges::count(fake_.posted, keyCode, &fakes::FakeKeyEvents::PostedKey::keyCode));
    }

private:
    fakes::FakeKeyEvents fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, KeyEventsContract, FakeKeyEventsDriver);
} // namespace testing
} // namespace quillane
