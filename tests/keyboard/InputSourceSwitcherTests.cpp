// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/InputSourceSwitcher.hpp"

#include "fakes/FakeDesktop.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using core::AppLanguage;
using fakes::arabic;
using fakes::english;
using fakes::hebrew;
using ::testing::ElementsAre;

class InputSourceSwitcherTest : public ::testing::Test {
protected:
    InputSourceSwitcherTest() {
        switcher.report = [this](const core::LocalizedText& text) {
            reports.push_back(text.rendered(AppLanguage::english));
        };
    }

    [[nodiscard]] std::string currentID() const {
        const auto current = sources.current();
        return current ? current->id : "none";
    }

    fakes::FakeInputSources sources;
    InputSourceSwitcher switcher{sources};
    std::vector<std::string> reports;
};

TEST_F(InputSourceSwitcherTest, GoesThroughTheSourcesInTheirOrder) {
    sources.setEnabled({english(), hebrew(), arabic()});
    for (const auto& next : {hebrew(), arabic(), english()}) {
        switcher.switchToNext();
        EXPECT_EQ(currentID(), next.id);
    }
    EXPECT_THAT(reports,
                ElementsAre("Keyboard language: Hebrew", "Keyboard language: Arabic", "Keyboard language: U.S."));
}

TEST_F(InputSourceSwitcherTest, ASourceThatIsNotListedGoesToTheFirst) {
    sources.setEnabled({english(), hebrew()});
    sources.switchFromOutside(arabic());
    switcher.switchToNext();
    EXPECT_EQ(currentID(), english().id);
}

TEST_F(InputSourceSwitcherTest, WhenTheCurrentSourceIsUnknownItGoesToTheFirst) {
    sources.setEnabled({english(), hebrew()});
    sources.setCurrentReadable(false);
    switcher.switchToNext();
    EXPECT_THAT(reports, ElementsAre("Keyboard language: U.S."));
    sources.setCurrentReadable(true);
    EXPECT_EQ(currentID(), english().id);
}

TEST_F(InputSourceSwitcherTest, OneSourceIsTooFew) {
    sources.setEnabled({english()});
    switcher.switchToNext();
    EXPECT_THAT(reports, ElementsAre("Enable at least two keyboard languages"));
    EXPECT_EQ(currentID(), english().id);
}

TEST_F(InputSourceSwitcherTest, NoSourceIsTooFew) {
    switcher.switchToNext();
    EXPECT_THAT(reports, ElementsAre("Enable at least two keyboard languages"));
}

TEST_F(InputSourceSwitcherTest, TheSameSourceTwiceIsTooFew) {
    sources.setEnabled({english(), english()});
    switcher.switchToNext();
    EXPECT_THAT(reports, ElementsAre("Enable at least two keyboard languages"));
}

TEST_F(InputSourceSwitcherTest, AnUnreadableListIsReported) {
    sources.setEnabled({english(), hebrew()});
    sources.setListReadable(false);
    switcher.switchToNext();
    EXPECT_THAT(reports, ElementsAre("Could not read the enabled keyboard languages"));
    EXPECT_EQ(currentID(), english().id);
}

TEST_F(InputSourceSwitcherTest, ARefusalIsReportedAndChangesNothing) {
    sources.setEnabled({english(), hebrew()});
    sources.setRefusesSelection(true);
    switcher.switchToNext();
    EXPECT_THAT(reports, ElementsAre("macOS could not switch keyboard language"));
    EXPECT_EQ(currentID(), english().id);
}

TEST_F(InputSourceSwitcherTest, WhenTheSystemHasSwitchedItOnlySaysWhichSourceItIs) {
    sources.setEnabled({english(), hebrew(), arabic()});
    sources.switchFromOutside(hebrew());
    sources.setSwitchedBySystemShortcut(true);
    switcher.switchToNext();
    EXPECT_THAT(reports, ElementsAre("Keyboard language: Hebrew"));
    EXPECT_EQ(currentID(), hebrew().id);
    EXPECT_EQ(sources.selectCount(), 0);
}

TEST_F(InputSourceSwitcherTest, WhenTheSystemHasSwitchedToAnUnknownSourceThatIsReported) {
    sources.setEnabled({english(), hebrew()});
    sources.setSwitchedBySystemShortcut(true);
    sources.setCurrentReadable(false);
    switcher.switchToNext();
    EXPECT_THAT(reports, ElementsAre("Could not read the enabled keyboard languages"));
    EXPECT_EQ(sources.selectCount(), 0);
}

TEST_F(InputSourceSwitcherTest, SwitchesWithoutAnybodyToTell) {
    sources.setEnabled({english(), hebrew()});
    switcher.report = nullptr;
    switcher.switchToNext();
    EXPECT_EQ(currentID(), hebrew().id);
}

} // namespace
} // namespace quillane
