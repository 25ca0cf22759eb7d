// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/SecretStore.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillane::testing {

/// What every SecretStore promises. The driver is constructed for each test, with a store that is open and empty, and
/// has:
///
///     core::SecretStore& store();
///     bool lock();    // until the user opens it; false when it cannot be locked for a test
template <typename Driver>
class SecretStoreContract : public ::testing::Test {
protected:
    using Status = core::SecretStatus;

    [[nodiscard]] Status statusOf(const core::SecretName& wanted) {
        const auto found = driver.store().find(wanted);
        const auto* status = std::get_if<Status>(&found);
        return status ? *status : Status::success;
    }

    [[nodiscard]] bool holds(const core::SecretName& wanted, const std::vector<std::byte>& secret) {
        const auto found = driver.store().find(wanted);
        const auto* bytes = std::get_if<core::SecretBytes>(&found);
        return bytes && std::ranges::equal(bytes->bytes(), secret);
    }

    static std::vector<std::byte> everyByte() {
        std::vector<std::byte> bytes(256);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<std::byte>(i);
        }
        return bytes;
    }

    const core::SecretName name{"com.example.service", "account"};
    Driver driver;
};

TYPED_TEST_SUITE_P(SecretStoreContract);

TYPED_TEST_P(SecretStoreContract, AMissingItemIsNotFound) {
    EXPECT_EQ(this->statusOf(this->name), core::SecretStatus::itemNotFound);
}

TYPED_TEST_P(SecretStoreContract, FindsWhatWasAddedByteForByte) {
    ASSERT_EQ(this->driver.store().add(this->name, "Label", this->everyByte()), core::SecretStatus::success);
    EXPECT_TRUE(this->holds(this->name, this->everyByte()));
}

TYPED_TEST_P(SecretStoreContract, NamesAreComparedWhole) {
    ASSERT_EQ(this->driver.store().add(this->name, "Label", this->everyByte()), core::SecretStatus::success);
    EXPECT_EQ(this->statusOf({"com.example.service", "other"}), core::SecretStatus::itemNotFound);
    EXPECT_EQ(this->statusOf({"com.example.other", "account"}), core::SecretStatus::itemNotFound);
    EXPECT_EQ(this->statusOf({"com.example", "account"}), core::SecretStatus::itemNotFound);
}

TYPED_TEST_P(SecretStoreContract, AnItemIsNeverReplaced) {
    ASSERT_EQ(this->driver.store().add(this->name, "Label", this->everyByte()), core::SecretStatus::success);
    EXPECT_EQ(this->driver.store().add(this->name, "Label", {}), core::SecretStatus::duplicateItem);
    EXPECT_TRUE(this->holds(this->name, this->everyByte()));
}

TYPED_TEST_P(SecretStoreContract, ALockedStoreIsAnErrorAndAsksNobody) {
    ASSERT_EQ(this->driver.store().add(this->name, "Label", this->everyByte()), core::SecretStatus::success);
    if (!this->driver.lock()) {
        GTEST_SKIP() << "the store cannot be locked for a test";
    }
    EXPECT_EQ(this->statusOf(this->name), core::SecretStatus::interactionNotAllowed);
    EXPECT_EQ(this->statusOf({"com.example.other", "account"}), core::SecretStatus::interactionNotAllowed);
    EXPECT_EQ(this->driver.store().add({"com.example.other", "account"}, "Label", {}),
              core::SecretStatus::interactionNotAllowed);
}

REGISTER_TYPED_TEST_SUITE_P(SecretStoreContract, AMissingItemIsNotFound, FindsWhatWasAddedByteForByte,
                            NamesAreComparedWhole, AnItemIsNeverReplaced, ALockedStoreIsAnErrorAndAsksNobody);

} // namespace quillane::testing
