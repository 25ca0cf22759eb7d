// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/LiveForm.hpp"
#include "desktop/history/LiveHistory.hpp"

#include <csignal>

namespace quillane::live {
namespace {

using std::chrono::milliseconds;

class LiveExclusionTest : public LiveHistoryTest {
protected:
    /// The history, with an application excluded that has never run: by its identifier in the list of installed ones.
    void startExcluding(const std::string& application) {
        core::ClipboardOptions options;
        options.enabled = true;
        options.ignoredApps = {application};
        require(writeHistorySettings(desktop(), options), "the settings cannot be written");
        const auto folder = desktop().home() / ".local" / "share" / "applications";
        std::filesystem::create_directories(folder);
        require(writeFile(folder / "org.example.Notes.desktop",
                          "[Desktop Entry]\nType=Application\nName=Notes\nExec=/opt/notes/bin/notes %U\n"),
                "the application cannot be installed");
        startHistory();
    }
};

TEST_F(LiveExclusionTest, HoldsWhenTheAgentLearnsOfTheSwitchAndTheCopyTogether) {
    startExcluding("Notes");
    const auto other = required(LiveForm::start(desktop(), "plain", "Other"));
    copy("from the other one");
    ASSERT_TRUE(hasEntries(1));
    ASSERT_EQ(kill(agent().process().pid(), SIGSTOP), 0); // as a busy machine stops it for a while
    const auto notes = LiveForm::start(desktop(), "plain", "notes");
    copy("in notes");
    ASSERT_EQ(kill(agent().process().pid(), SIGCONT), 0);
    ASSERT_TRUE(notes) << notes.error();
    EXPECT_TRUE(holdsFor(milliseconds{1'000}, [&] { return agent().status().at("clipboard").at("entries") == 1; }));
}

TEST_F(LiveExclusionTest, HoldsWhenTheAgentLearnsOfTheCopyAndTheNextSwitchTogether) {
    startExcluding("Notes");
    const auto notes = required(LiveForm::start(desktop(), "plain", "notes"));
    ASSERT_TRUE(agent().waitForStatus([&](const auto& status) { return status.at("frontProcess") == notes.pid(); }));
    ASSERT_EQ(kill(agent().process().pid(), SIGSTOP), 0); // as a busy machine stops it for a while
    copy("in notes");
    const auto other = LiveForm::start(desktop(), "plain", "Other");
    ASSERT_EQ(kill(agent().process().pid(), SIGCONT), 0);
    ASSERT_TRUE(other) << other.error();
    EXPECT_TRUE(holdsFor(milliseconds{1'000}, [&] { return agent().status().at("clipboard").at("entries") == 0; }));
    copy("from the other one");
    EXPECT_TRUE(hasEntries(1));
}

TEST_F(LiveExclusionTest, HoldsHoweverTheApplicationsWindowsAreCalled) {
    startExcluding("Notes");
    for (const auto* windowClass : {"org.example.Notes", "org.example.notes", "notes", "NOTES"}) {
        const auto notes = required(LiveForm::start(desktop(), "plain", windowClass));
        copy(std::string("in ") + windowClass);
        EXPECT_TRUE(holdsFor(milliseconds{600}, [&] { return agent().status().at("clipboard").at("entries") == 0; }))
            << windowClass;
    }
    const auto other = required(LiveForm::start(desktop(), "plain", "org.example.NotesReader"));
    copy("elsewhere");
    EXPECT_TRUE(hasEntries(1));
}

} // namespace
} // namespace quillane::live
