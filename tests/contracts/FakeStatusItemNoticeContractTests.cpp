// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

namespace quillane {
namespace {} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, StatusItemNoticeContract, FakeStatusItemDriver);
} // namespace testing
} // namespace quillane
