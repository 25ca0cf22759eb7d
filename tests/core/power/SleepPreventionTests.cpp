// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/power/SleepPrevention.hpp"

#include "core/localization/Texts.hpp"
#include "fakes/FakeSleepAssertions.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace quillane::core {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = SleepAssertionKind;

class SleepPreventionTest : public ::testing::Test {
protected:
    fakes::FakeSleepAssertions system;
    std::optional<SleepPrevention> prevention{std::in_place, system};
};

TEST_F(SleepPreventionTest, HoldsNothingAtFirst) {
    EXPECT_FALSE(prevention->isActive());
    EXPECT_EQ(prevention->error(), std::nullopt);
    EXPECT_THAT(system.asked(), IsEmpty());
}

TEST_F(SleepPreventionTest, EnablingTwiceAsksForEachKindOnceSystemFirst) {
    prevention->setEnabled(true);
    prevention->setEnabled(true);
    EXPECT_TRUE(prevention->isActive());
    EXPECT_THAT(system.asked(), ElementsAre(Kind::system, Kind::display));
}

TEST_F(SleepPreventionTest, DisablingReleasesTheDisplayFirst) {
    prevention->setEnabled(true);
    prevention->setEnabled(false);
    prevention->setEnabled(false);
    EXPECT_FALSE(prevention->isActive());
    EXPECT_THAT(system.released(), ElementsAre(Kind::display, Kind::system));
}

TEST_F(SleepPreventionTest, DisablingAtFirstDoesNothing) {
    prevention->setEnabled(false);
    EXPECT_THAT(system.asked(), IsEmpty());
    EXPECT_THAT(system.released(), IsEmpty());
}

TEST_F(SleepPreventionTest, ARefusedDisplayLeavesNothingHeldAndIsTriedAgainOnlyAfterTurningOff) {
    system.refuse(Kind::display, -536870195);
    prevention->setEnabled(true);
    EXPECT_FALSE(prevention->isActive());
    EXPECT_EQ(prevention->error(), (SleepAssertionError{-536870195}));
    EXPECT_THAT(system.released(), ElementsAre(Kind::system));
    system.allowAll();
    prevention->setEnabled(true);
    EXPECT_EQ(system.asked().size(), 2U);
    EXPECT_TRUE(prevention->error());
    prevention->setEnabled(false);
    EXPECT_EQ(prevention->error(), std::nullopt);
    prevention->setEnabled(true);
    EXPECT_TRUE(prevention->isActive());
}

TEST_F(SleepPreventionTest, ARefusedSystemAsksForNothingMore) {
    system.refuse(Kind::system, 5);
    prevention->setEnabled(true);
    EXPECT_THAT(system.asked(), ElementsAre(Kind::system));
    EXPECT_THAT(system.released(), IsEmpty());
    EXPECT_EQ(prevention->error(), (SleepAssertionError{5}));
}

TEST_F(SleepPreventionTest, ALostAssertionIsTakenAgain) {
    prevention->setEnabled(true);
    system.lose(Kind::system, 130);
    system.lose(Kind::display, 130);
    EXPECT_TRUE(prevention->isActive());
    EXPECT_EQ(prevention->error(), std::nullopt);
    EXPECT_THAT(system.asked(), ElementsAre(Kind::system, Kind::display, Kind::system, Kind::display));
    EXPECT_EQ(system.held(), (std::multiset{Kind::system, Kind::display}));
    prevention->setEnabled(false);
    EXPECT_THAT(system.released(), ElementsAre(Kind::display, Kind::system));
}

TEST_F(SleepPreventionTest, AnAssertionLostTwiceIsAFailureUntilTurnedOffAndOn) {
    prevention->setEnabled(true);
    system.lose(Kind::display, 130);
    system.lose(Kind::display, 130);
    EXPECT_FALSE(prevention->isActive());
    EXPECT_EQ(prevention->error(), (SleepAssertionError{130}));
    EXPECT_THAT(system.held(), IsEmpty());
    prevention->setEnabled(true);
    EXPECT_THAT(system.held(), IsEmpty());
    prevention->setEnabled(false);
    prevention->setEnabled(true);
    system.lose(Kind::display, 130);
    EXPECT_TRUE(prevention->isActive());
}

TEST_F(SleepPreventionTest, ALostAndRefusedAssertionIsAFailureWithNothingHeld) {
    prevention->setEnabled(true);
    system.refuse(Kind::system, 95);
    system.lose(Kind::system, 130);
    EXPECT_FALSE(prevention->isActive());
    EXPECT_EQ(prevention->error(), (SleepAssertionError{95}));
    EXPECT_THAT(system.held(), IsEmpty());
    EXPECT_THAT(system.released(), ElementsAre(Kind::display));
}

TEST_F(SleepPreventionTest, DestructionReleasesTheLastFirst) {
    prevention->setEnabled(true);
    prevention.reset();
    EXPECT_THAT(system.released(), ElementsAre(Kind::display, Kind::system));
}

TEST_F(SleepPreventionTest, HoldsBothOrNoneWhateverHappens) {
    std::mt19937 random(7);
    for (int step = 0; step < 5000; ++step) {
        system.allowAll();
        if (random() % 3 == 0) {
            system.refuse(random() % 2 == 0 ? Kind::system : Kind::display, 1);
        }
        const bool wanted = random() % 2 == 0;
        prevention->setEnabled(wanted);
        if (prevention->isActive() && random() % 3 == 0) {
            system.lose(random() % 2 == 0 ? Kind::system : Kind::display, 2);
        }
        const auto held = system.held();
        ASSERT_EQ(held.size(), prevention->isActive() ? 2U : 0U);
        ASSERT_TRUE(wanted || held.empty());
        ASSERT_EQ(wanted, prevention->isActive() || prevention->error());
    }
}

TEST(KeepAwakeStatus, SaysWhetherItIsOffPausedFailedOrOn) {
    FeatureOptions options;
    EXPECT_EQ(keepAwakeStatus(options, false), LocalizedText(texts::keepAwakeOff));
    options.keepAwake = true;
    EXPECT_EQ(keepAwakeStatus(options, false).rendered(AppLanguage::english), "Keep Awake — on indefinitely");
    EXPECT_EQ(keepAwakeStatus(options, true).rendered(AppLanguage::english),
              "Could not prevent sleep. Turn off and on to retry.");
    options.paused = true;
    EXPECT_EQ(keepAwakeStatus(options, true).rendered(AppLanguage::english), "Keep Awake — paused");
    options.keepAwake = false;
    EXPECT_EQ(keepAwakeStatus(options, true).rendered(AppLanguage::english), "Keep Awake is off");
}

} // namespace
} // namespace quillane::core
