// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/Retyper.hpp"

#include "fakes/FakeDesktop.hpp"
#include "support/KeyboardLayouts.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

using namespace fakes;

class RetyperTest : public ::testing::Test {
protected:
    RetyperTest() {
        sources.setEnabled({english(), hebrew(), arabic()});
        sources.setLayout(english().id, testing::englishLayout());
        sources.setLayout(hebrew().id, testing::hebrewLayout());
        sources.setLayout(arabic().id, testing::arabicLayout());
        retyper.start();
    }

    FakeInputSources sources;
    Retyper retyper{sources};
};

TEST_F(RetyperTest, TargetIsTheFirstSourceOfTheOtherDirectionUntilOneIsUsed) {
    EXPECT_EQ(retyper.retyped("akuo"), "שלום");
    EXPECT_EQ(retyper.retyped("مرحبا"), "lvpfh");
}

TEST_F(RetyperTest, TargetIsTheSourceThatWasUsedLast) {
    ASSERT_TRUE(sources.select(arabic().id));
    EXPECT_EQ(retyper.retyped("lvpfh"), "مرحبا");
    ASSERT_TRUE(sources.select(english().id));
    EXPECT_EQ(retyper.retyped("lvpfh"), "مرحبا");
    ASSERT_TRUE(sources.select(hebrew().id));
    EXPECT_EQ(retyper.retyped("akuo"), "שלום");
}

TEST_F(RetyperTest, SourceInUseAtTheStartCounts) {
    ASSERT_TRUE(sources.select(arabic().id));
    Retyper later(sources);
    later.start();
    ASSERT_TRUE(sources.select(english().id));
    EXPECT_EQ(later.retyped("lvpfh"), "مرحبا");
}

TEST_F(RetyperTest, RemovedSourceIsNoTarget) {
    ASSERT_TRUE(sources.select(arabic().id));
    sources.setEnabled({english(), hebrew()});
    EXPECT_EQ(retyper.retyped("akuo"), "שלום");
}

TEST_F(RetyperTest, SourceWithoutKeysIsPassedOver) {
    sources.setEnabled({{"com.example.method", "Method", {"he"}}, arabic(), english()});
    EXPECT_EQ(retyper.retyped("lvpfh"), "مرحبا");
}

TEST_F(RetyperTest, TextThatWouldStayIsNone) {
    EXPECT_EQ(retyper.retyped("123"), std::nullopt);
    EXPECT_EQ(retyper.retyped(""), std::nullopt);
    EXPECT_EQ(retyper.retyped("Привет"), std::nullopt);
}

TEST_F(RetyperTest, WithoutAListThereIsNone) {
    sources.setListReadable(false);
    Retyper blind(sources);
    EXPECT_EQ(blind.retyped("akuo"), std::nullopt);
}

} // namespace
} // namespace quillane
