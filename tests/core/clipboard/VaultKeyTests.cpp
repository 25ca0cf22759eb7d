// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultKey.hpp"

#include "fakes/FakeSecretStore.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

const SecretName name{"com.quillane.app.clipboard", "local-encryption-key"};

TEST(VaultKey, AStoredKeyIsUsedAsItIs) {
    fakes::FakeSecretStore store;
    const std::vector<std::byte> stored(32, std::byte{9});
    store.put(name, {"label", stored});
    const auto key = obtainVaultKey(store);
    ASSERT_TRUE(key);
    EXPECT_TRUE(std::ranges::equal(key->bytes(), stored));
    EXPECT_EQ(store.count(), 1U);
}

TEST(VaultKey, WithoutOneANewKeyIsStoredUnderItsNameAndLabel) {
    fakes::FakeSecretStore store;
    const auto key = obtainVaultKey(store);
    ASSERT_TRUE(key);
    EXPECT_EQ(key->size(), 32U);
    ASSERT_TRUE(store.item(name));
    EXPECT_EQ(store.item(name)->label, "Quillane clipboard history encryption");
    EXPECT_TRUE(std::ranges::equal(key->bytes(), store.item(name)->secret));
    fakes::FakeSecretStore other;
    EXPECT_FALSE(std::ranges::equal(obtainVaultKey(other)->bytes(), key->bytes()));
    EXPECT_TRUE(std::ranges::equal(obtainVaultKey(store)->bytes(), key->bytes()));
}

TEST(VaultKey, AnyOtherAnswerIsTheErrorAndChangesNothing) {
    for (const auto status :
         {SecretStatus::notAvailable, SecretStatus::authFailed, SecretStatus::interactionNotAllowed}) {
        fakes::FakeSecretStore store;
        store.failWith(status);
        EXPECT_EQ(obtainVaultKey(store).error(), status);
        EXPECT_EQ(store.count(), 0U);
    }
}

TEST(VaultKey, AKeyOfAnotherLengthIsAnErrorAndIsNotReplaced) {
    for (const std::size_t size : {0U, 16U, 31U, 33U}) {
        fakes::FakeSecretStore store;
        store.put(name, {"label", std::vector<std::byte>(size)});
        EXPECT_EQ(obtainVaultKey(store).error(), SecretStatus::decode);
        EXPECT_EQ(store.item(name)->secret.size(), size);
    }
}

TEST(VaultKey, AKeyThatCannotBeStoredIsNotUsed) {
    fakes::FakeSecretStore store;
    store.failAddingWith(SecretStatus::authFailed);
    EXPECT_EQ(obtainVaultKey(store).error(), SecretStatus::authFailed);
}

} // namespace
} // namespace quillane::core
