// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/WindowListContract.hpp"
#include "fakes/FakeWindowList.hpp"

namespace quillane {
namespace {

class FakeWindowListDriver {
public:
    WindowList& list() { return fake_; }

    pid_t open(const core::ScreenRect& content) {
        fake_.open({.pid = ++last_, .layer = 0, .bounds = content});
        return last_;
    }

    void close(pid_t pid) { fake_.close(pid); }

    static bool waitUntil(const std::function<bool()>& condition) { return condition(); }

private:
    fakes::FakeWindowList fake_;
    pid_t last_ = 100;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, WindowListContract, FakeWindowListDriver);
} // namespace testing
} // namespace quillane
