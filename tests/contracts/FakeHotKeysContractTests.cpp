// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/HotKeysContract.hpp"
#include "fakes/FakeDesktop.hpp"
#include "fakes/FakeHotKeys.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace quillane {
namespace {

using namespace fakes;

class FakeHotKeysDriver {
public:
    HotKeys& hotKeys() { return hotKeys_; }

    void press() { hotKeys_.press(key); }

    void takeByAnother() { hotKeys_.take(key); }

    void giveBack() { hotKeys_.giveBack(key); }

    bool waitUntil(const std::function<bool()>& condition) {
        settle();
        return condition();
    }

    void settle() { queue_.runPosted(); }

private:
    static constexpr HotKey key{9, core::flags::command | core::flags::shift};

    FakeMainQueue queue_;
    FakeHotKeys hotKeys_{queue_};
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, HotKeysContract, FakeHotKeysDriver);
} // namespace testing
} // namespace quillane
