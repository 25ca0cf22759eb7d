// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/SerialQueueContract.hpp"
#include "fakes/FakeSerialQueue.hpp"

namespace quillane {
namespace {

class FakeSerialQueueDriver {
public:
    SerialQueue& queue() { return fake_; }

private:
    fakes::FakeSerialQueue fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SerialQueueContract, FakeSerialQueueDriver);
} // namespace testing
} // namespace quillane
