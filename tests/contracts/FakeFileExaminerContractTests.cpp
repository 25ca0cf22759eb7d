// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/FileExaminerContract.hpp"
#include "fakes/FakeFileExaminer.hpp"

#include <functional>

namespace quillane {
namespace {

class FakeFileExaminerDriver {
public:
    core::FileExaminer examiner() { return fake_.examiner(); }

    void goAway() { fake_.goAway(); }

    void comeBack() { fake_.comeBack(); }

    static bool waitUntil(const std::function<bool()>& condition) { return condition(); }

private:
    fakes::FakeFileExaminer fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FileExaminerContract, FakeFileExaminerDriver);
} // namespace testing
} // namespace quillane
