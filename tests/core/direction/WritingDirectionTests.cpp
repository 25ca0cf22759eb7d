// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/WritingDirection.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

TEST(WritingDirection, RawValuesLeadThereAndBack) {
    EXPECT_EQ(rawValue(WritingDirection::leftToRight), "LTR");
    EXPECT_EQ(rawValue(WritingDirection::rightToLeft), "RTL");
    EXPECT_EQ(writingDirection("LTR"), WritingDirection::leftToRight);
    EXPECT_EQ(writingDirection("RTL"), WritingDirection::rightToLeft);
}

TEST(WritingDirection, OtherTextIsNone) {
    for (const auto* text : {"", "rtl", "RTL ", "RT", "rightToLeft"}) {
        EXPECT_EQ(writingDirection(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace quillane::core
