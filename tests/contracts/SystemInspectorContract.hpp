// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemInspector.hpp"

#include <gtest/gtest.h>

#include <cctype>

namespace quillane::testing {

/// What every SystemInspector promises. The driver is constructed for each test and has `SystemInspector& inspector()`.
template <typename Driver>
class SystemInspectorContract : public ::testing::Test {
protected:
    Driver driver;
};

TYPED_TEST_SUITE_P(SystemInspectorContract);

TYPED_TEST_P(SystemInspectorContract, NamesTheSystemWithItsVersion) {
    const auto name = this->driver.inspector().inspect().name;
    EXPECT_TRUE(std::isalpha(static_cast<unsigned char>(name.front())) != 0) << name;
    EXPECT_NE(name.find_first_of("0123456789"), std::string::npos) << name;
}

TYPED_TEST_P(SystemInspectorContract, InspectingChangesNothing) {
    const auto first = this->driver.inspector().inspect();
    EXPECT_EQ(this->driver.inspector().inspect(), first);
}

TYPED_TEST_P(SystemInspectorContract, SignaturesAndAppNapAreOfMacOSAndBusesOfLinux) {
    const auto facts = this->driver.inspector().inspect();
    const bool isMac = facts.desktop == core::Desktop::macOS;
    EXPECT_EQ(facts.signature.has_value(), isMac);
    EXPECT_EQ(facts.holdsActivity.has_value(), isMac);
    EXPECT_EQ(facts.accessibilityBus.has_value(), !isMac);
    EXPECT_EQ(facts.secretService.has_value(), !isMac);
}

REGISTER_TYPED_TEST_SUITE_P(SystemInspectorContract, NamesTheSystemWithItsVersion, InspectingChangesNothing,
                            SignaturesAndAppNapAreOfMacOSAndBusesOfLinux);

} // namespace quillane::testing
