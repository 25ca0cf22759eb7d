// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardTest.hpp"

#include "core/clipboard/PasteboardTypes.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// On a desktop that announces changes and delivers the contents later.
class LateContentsTest : public testing::ClipboardTest {
protected:
    LateContentsTest() { pasteboard.announceChanges(); }

    /// What is fetched of an offered text.
    [[nodiscard]] std::vector<std::string_view> wanted() const {
        return pasteboard.interest() ? pasteboard.interest()({std::string(core::pasteboardTypes::string)}, std::nullopt)
                                     : std::vector<std::string_view>();
    }

    void arrive(const std::string& text) {
        pasteboard.arrive(text);
        pass(2s);
    }
};

TEST_F(LateContentsTest, AreRecordedHoweverLateTheyArrive) {
    start();
    pasteboard.copyUnfetched();
    EXPECT_THAT(wanted(), ElementsAre(core::pasteboardTypes::string));
    pass(20s);
    arrive("late");
    EXPECT_THAT(recorded(), ElementsAre("late"));
    EXPECT_EQ(manager_->history().entries()[0].copiedAt, manager_->history().entries()[0].createdAt);
}

TEST_F(LateContentsTest, AreRecordedAsOfTheMomentOfTheCopy) {
    start();
    const auto copied = now();
    pasteboard.copyUnfetched();
    workspace.activate(workspace.open("com.example.viewer", "Viewer"));
    secureInput.setEnabled(true);
    pass(5s);
    arrive("late");
    ASSERT_THAT(recorded(), ElementsAre("late"));
    EXPECT_EQ(manager_->history().entries()[0].source, "com.example.editor");
    EXPECT_EQ(manager_->history().entries()[0].sourceName, "Editor");
    EXPECT_EQ(manager_->history().entries()[0].copiedAt, copied);
}

TEST_F(LateContentsTest, BelongToTheApplicationThatThePasteboardNames) {
    start();
    pasteboard.setSource(PasteboardSource{.application = RunningApplication{7, "com.example.notes", "Notes"}});
    pasteboard.copyUnfetched();
    arrive("from notes");
    ASSERT_THAT(recorded(), ElementsAre("from notes"));
    EXPECT_EQ(manager_->history().entries()[0].source, "com.example.notes");
    pasteboard.setSource(PasteboardSource{.application = RunningApplication{8, "com.bitwarden.desktop", "Bitwarden"}});
    pasteboard.copyUnfetched();
    EXPECT_THAT(wanted(), IsEmpty());
    arrive("kept password");
    EXPECT_THAT(recorded(), ElementsAre("from notes"));
}

TEST_F(LateContentsTest, OfAnApplicationThatNobodyCanNameAreNeitherFetchedNorRecorded) {
    start();
    pasteboard.setSource(PasteboardSource{.isKnown = false, .application = {}});
    pasteboard.copyUnfetched();
    EXPECT_THAT(wanted(), IsEmpty());
    arrive("perhaps a password");
    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(LateContentsTest, OfACopyMadeWhilePausedAreNeitherFetchedNorRecorded) {
    start();
    manager_->configure({.paused = true});
    pasteboard.copyUnfetched();
    manager_->configure({});
    EXPECT_THAT(wanted(), IsEmpty());
    arrive("secret");
    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(LateContentsTest, AreNotRecordedAfterAPauseSinceTheCopy) {
    start();
    pasteboard.copyUnfetched();
    manager_->configure({.paused = true});
    EXPECT_THAT(wanted(), IsEmpty());
    manager_->configure({});
    arrive("copied before the pause");
    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(LateContentsTest, OfACopyMadeWhileItIsOffAreNeitherFetchedNorRecorded) {
    start();
    setOption(&core::ClipboardOptions::enabled, false);
    pasteboard.copyUnfetched();
    setOption(&core::ClipboardOptions::enabled, true);
    EXPECT_THAT(wanted(), IsEmpty());
    arrive("off");
    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(LateContentsTest, OfACopyMadeWhileTheHistoryIsLoadingAreNeitherFetchedNorRecorded) {
    make();
    manager_->start();
    pasteboard.copyUnfetched();
    EXPECT_THAT(wanted(), IsEmpty());
    settle();
    EXPECT_TRUE(manager_->isReady());
    arrive("too early");
    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(LateContentsTest, OfAnExcludedApplicationAreNeitherFetchedNorRecorded) {
    start();
    auto options = manager_->options();
    options.ignoredApps = {"com.example.excluded"};
    manager_->setOptions(options);
    for (const auto* application : {"com.example.excluded", "com.bitwarden.desktop"}) {
        workspace.activate(workspace.open(application, "Excluded"));
        pasteboard.copyUnfetched();
        EXPECT_THAT(wanted(), IsEmpty()) << application;
        workspace.activate(workspace.open("com.example.editor", "Editor"));
        arrive("secret");
        EXPECT_THAT(recorded(), IsEmpty()) << application;
    }
}

TEST_F(LateContentsTest, OfACopyFromAPasswordFieldAreNeitherFetchedNorRecorded) {
    start();
    secureInput.setEnabled(true);
    pasteboard.copyUnfetched();
    EXPECT_THAT(wanted(), IsEmpty());
    secureInput.setEnabled(false);
    arrive("typed password");
    EXPECT_THAT(recorded(), IsEmpty());
}

} // namespace
} // namespace quillane
