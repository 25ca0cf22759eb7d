// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/Labels.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

constexpr Labels label{.english = "Writing Direction", .hebrew = "כיוון כתיבה", .arabic = "اتجاه الكتابة"};

TEST(Labels, MatchInEachLanguageThatTheyHave) {
    EXPECT_TRUE(label.matches("Writing Direction"));
    EXPECT_TRUE(label.matches("כיוון כתיבה"));
    EXPECT_TRUE(label.matches("اتجاه الكتابة"));
    EXPECT_FALSE(label.matches("Schreibrichtung"));
}

TEST(Labels, InvisibleDirectionMarksAndWhiteSpaceAroundThemDoNotCount) {
    EXPECT_TRUE(label.matches("\u200Fכיוון כתיבה"));
    EXPECT_TRUE(label.matches(" \u202Bכיוון\u200F כתיבה\u202C\n"));
    EXPECT_TRUE(label.matches("\u2068 Writing Direction\u00A0\u2069"));
    EXPECT_FALSE(label.matches("כיוון  כתיבה"));
    EXPECT_FALSE(label.matches("כיווןכתיבה"));
}

TEST(Labels, CaseCounts) {
    EXPECT_FALSE(label.matches("Writing direction"));
    EXPECT_TRUE((Labels{.english = "Writing Direction", .british = "Writing direction"}).matches("Writing direction"));
}

TEST(Labels, NoLabelIsNothingThatIsShown) {
    for (const auto* shown : {"", " ", "\u200F", "\xFF"}) {
        EXPECT_FALSE(label.matches(shown));
        EXPECT_FALSE(Labels{}.matches(shown));
    }
    EXPECT_FALSE((Labels{.english = " padded"}).matches(" padded")) << "a label stands as it is";
}

} // namespace
} // namespace quillane::core
