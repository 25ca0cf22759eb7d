// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/ExitHandler.hpp"

#include "core/support/SealedBox.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <optional>
#include <thread>

namespace quillane {
namespace {

using ::testing::ExitedWithCode;

void exitWithHandler() {
    const ExitHandler handler([] { std::cerr << "saved"; });
    std::exit(3);
}

void exitAfterHandler() {
    {
        const ExitHandler handler([] { std::cerr << "saved"; });
    }
    std::exit(3);
}

void exitOnAnotherThread() {
    const ExitHandler handler([] { std::cerr << "saved"; });
    std::thread([] { std::exit(3); }).join();
}

void sealInHandler() {
    core::sealedBox::keepUntilExit();
    std::optional<core::SecretBytes> key;
    const ExitHandler handler([&] { std::cerr << (core::sealedBox::seal(*key, {}) ? "sealed" : "not sealed"); });
    key = core::SecretBytes::random(core::sealedBox::keySize);
    std::cerr << (core::sealedBox::seal(*key, {}) ? "" : "never sealed ");
    std::exit(3);
}

TEST(ExitHandlerDeathTest, BoxesCanBeSealedAtTheEnd) {
    EXPECT_EXIT(sealInHandler(), ExitedWithCode(3), "^sealed$");
}

TEST(ExitHandlerDeathTest, CallsBackWhenTheProgramEndsFromWithin) {
    EXPECT_EXIT(exitWithHandler(), ExitedWithCode(3), "^saved$");
}

TEST(ExitHandlerDeathTest, CallsNobodyAfterItHasGone) {
    EXPECT_EXIT(exitAfterHandler(), ExitedWithCode(3), "^$");
}

TEST(ExitHandlerDeathTest, CallsNobodyWhenAnotherThreadEndsTheProgram) {
    EXPECT_EXIT(exitOnAnotherThread(), ExitedWithCode(3), "^$");
}

} // namespace
} // namespace quillane
