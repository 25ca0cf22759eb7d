// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "settings/SettingsModel.hpp"

#include "fakes/FakeSleepAssertions.hpp"
#include "fakes/FakeUserDefaults.hpp"

#include <gtest/gtest.h>

#include <initializer_list>

namespace quillane {
namespace {

using core::FeatureOptions;
using Runtime = SettingsModel::Runtime;

class SettingsModelTest : public testing::Test {
protected:
    SettingsModelTest() {
        Runtime ready;
        ready.accessibilityGranted = ready.inputMonitoringGranted = true;
        ready.monitorRunning = ready.keyboardEventsObserved = true;
        model.setRuntime(ready);
        QObject::connect(&model, &SettingsModel::changed, [this] { ++changes; });
    }

    void set(bool Runtime::*field, bool value) {
        auto runtime = model.runtime();
        runtime.*field = value;
        model.setRuntime(runtime);
    }

    void set(std::initializer_list<bool FeatureOptions::*> fields, bool value) {
        auto options = model.options();
        for (const auto field : fields) {
            options.*field = value;
        }
        model.setOptions(options);
    }

    fakes::FakeUserDefaults defaults;
    fakes::FakeSleepAssertions sleepAssertions;
    SettingsModel model{defaults, sleepAssertions};
    int changes = 0;
};

constexpr auto keyboardFeatures = {&FeatureOptions::shiftEnglish, &FeatureOptions::languageSwitch,
                                   &FeatureOptions::writingDirection};

TEST_F(SettingsModelTest, OptionsAreSavedBeforeTheHandlerHearsOfThem) {
    std::optional<FeatureOptions> stored;
    model.optionsChanged = [&] { stored = FeatureOptions::load(defaults); };
    set({&FeatureOptions::paused}, true);
    ASSERT_TRUE(stored);
    EXPECT_TRUE(stored->paused);
    EXPECT_EQ(changes, 1);
}

TEST_F(SettingsModelTest, ATestTextIsAnnouncedWhenItChanges) {
    model.setTestText("a");
    model.setTestText("a");
    EXPECT_EQ(model.testText(), "a");
    EXPECT_EQ(changes, 1);
}

TEST_F(SettingsModelTest, StoredOptionsAreReadAtStart) {
    defaults.setObject("ShiftEnglishEnabled", false);
    EXPECT_FALSE(SettingsModel(defaults, sleepAssertions).options().shiftEnglish);
}

TEST_F(SettingsModelTest, AnEqualRuntimeChangesNothing) {
    model.setRuntime(model.runtime());
    EXPECT_EQ(changes, 0);
    set(&Runtime::inputIsRTL, true);
    EXPECT_EQ(changes, 1);
}

TEST_F(SettingsModelTest, ReadyNeedsBothPermissionsAFeatureAndNoSuspension) {
    EXPECT_TRUE(model.isReady());
    for (const auto field : {&Runtime::accessibilityGranted, &Runtime::inputMonitoringGranted}) {
        set(field, false);
        EXPECT_FALSE(model.isReady());
        set(field, true);
    }
    set(&Runtime::screenSharingSuspended, true);
    EXPECT_FALSE(model.isReady());
    set(&Runtime::screenSharingSuspended, false);
    set({&FeatureOptions::paused}, true);
    EXPECT_FALSE(model.isReady());
    set({&FeatureOptions::paused}, false);
    set(keyboardFeatures, false);
    EXPECT_FALSE(model.isReady());
    for (const auto field : keyboardFeatures) {
        set({field}, true);
        EXPECT_TRUE(model.isReady());
        set({field}, false);
    }
}

TEST_F(SettingsModelTest, DirectionCanBeTestedWhileItWouldReachAnApplication) {
    EXPECT_TRUE(model.canTestDirection());
    set(&Runtime::accessibilityGranted, false);
    EXPECT_FALSE(model.canTestDirection());
    set(&Runtime::accessibilityGranted, true);
    set(&Runtime::monitorRunning, false);
    EXPECT_FALSE(model.canTestDirection());
    set(&Runtime::monitorRunning, true);
    set(&Runtime::screenSharingSuspended, true);
    EXPECT_FALSE(model.canTestDirection());
    set(&Runtime::screenSharingSuspended, false);
    set({&FeatureOptions::writingDirection}, false);
    EXPECT_FALSE(model.canTestDirection());
    set({&FeatureOptions::writingDirection}, true);
    set({&FeatureOptions::paused}, true);
    EXPECT_FALSE(model.canTestDirection());
}

TEST_F(SettingsModelTest, ARelaunchIsNeededWhenAWantedMonitorHearsNothing) {
    EXPECT_FALSE(model.needsRelaunch());
    set(&Runtime::keyboardEventsObserved, false);
    EXPECT_TRUE(model.needsRelaunch());
    set(&Runtime::keyboardEventsObserved, true);
    set(&Runtime::monitorRunning, false);
    EXPECT_TRUE(model.needsRelaunch());
    set(&Runtime::inputMonitoringGranted, false);
    EXPECT_TRUE(model.needsRelaunch()); // not needed for the monitor
    set(&Runtime::accessibilityGranted, false);
    EXPECT_FALSE(model.needsRelaunch());
    set(&Runtime::accessibilityGranted, true);
    set({&FeatureOptions::paused}, true);
    EXPECT_FALSE(model.needsRelaunch());
}

TEST_F(SettingsModelTest, TheTestTargetChangesOnlyWhenItDiffers) {
    model.setTestTargetID("com.apple.TextEdit");
    model.setTestTargetID("com.apple.TextEdit");
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace quillane
