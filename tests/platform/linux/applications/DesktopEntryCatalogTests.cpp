// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/DesktopEntryCatalog.hpp"

#include "contracts/ApplicationCatalogContract.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/linux/applications/DesktopEntries.hpp"
#include "support/TemporaryFolder.hpp"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>

#include <array>
#include <cstdlib>
#include <fstream>

namespace quillane {

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

void write(const fs::path& file, const std::string& lines) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "[Desktop Entry]\nType=Application\n" << lines;
}

class DesktopEntriesTest : public ::testing::Test {
protected:
    [[nodiscard]] ApplicationIndex index() const { return ApplicationIndex(desktopEntries(folders)); }

    /// What menus show.
    [[nodiscard]] std::vector<std::string> found() const {
        std::vector<std::string> result;
        const auto all = index();
        for (const auto& one : all.applications()) {
            result.push_back(one.bundleID + "=" + one.name);
        }
        return result;
    }

    live::TemporaryFolder files;
    std::vector<fs::path> folders{files.path() / "home", files.path() / "system"};
};

TEST_F(DesktopEntriesTest, TheDeclaredClassOfAnEntryIsTheIdentifier) {
    write(folders[1] / "browser.desktop", "Name=Chromium\nExec=/usr/bin/chromium %U\nStartupWMClass=chromium\n");
    EXPECT_THAT(found(), ElementsAre("org.chromium.Chromium=Chromium"));
}

TEST_F(DesktopEntriesTest, AnEntryWithoutAClassIsNamedAfterItsProgram) {
    write(folders[1] / "org.xfce.mousepad.desktop", "Name=Mousepad\nExec=\"/usr/bin/mousepad\" %U\n");
    EXPECT_THAT(found(), ElementsAre("Mousepad=Mousepad"));
}

TEST_F(DesktopEntriesTest, ProgramsThatOnlyStartOthersAreCalledByTheirEntries) {
    write(folders[1] / "org.example.A.desktop", "Name=A\nExec=flatpak run org.example.A\n");
    write(folders[1] / "b.desktop", "Name=B\nExec=env X=1 b\n");
    write(folders[1] / "c.desktop", "Name=C\nExec=flatpak run org.example.C\nStartupWMClass=org.example.C\n");
    EXPECT_THAT(found(), ElementsAre("b=B", "org.example.C=C", "org.example.A=A"));
}

TEST_F(DesktopEntriesTest, TheCategoryMakesATerminal) {
    write(folders[1] / "a.desktop", "Name=A\nExec=a\nCategories=GTK;System;TerminalEmulator;\n");
    write(folders[1] / "b.desktop", "Name=B\nExec=b\nCategories=TerminalEmulator\nNoDisplay=true\n");
    write(folders[1] / "c.desktop", "Name=C\nExec=c\nCategories=System;X-TerminalEmulators;\n");
    write(folders[1] / "d.desktop", "Name=D\nExec=d\n");
    const auto all = index();
    EXPECT_TRUE(all.isTerminal(all.identifierOf("A")));
    EXPECT_TRUE(all.isTerminal(all.identifierOf("B")));
    EXPECT_FALSE(all.isTerminal(all.identifierOf("C")));
    EXPECT_FALSE(all.isTerminal(all.identifierOf("D")));
    EXPECT_FALSE(all.isTerminal(all.identifierOf("Unknown")));
}

TEST_F(DesktopEntriesTest, EntriesHiddenFromMenusAreLeftOut) {
    write(folders[1] / "a.desktop", "Name=A\nExec=a\nNoDisplay=true\n");
    write(folders[1] / "b.desktop", "Name=B\nExec=b\nHidden=true\n");
    write(folders[1] / "c.desktop", "Name=C\nExec=c\nTerminal=true\n");
    write(folders[1] / "d.desktop", "Name=D\nExec=\n");
    write(folders[1] / "e.desktop", "Exec=e\n");
    write(folders[1] / "f.txt", "Name=F\nExec=f\n");
    std::ofstream(folders[1] / "g.desktop") << "no entry at all \xff";
    std::ofstream(folders[1] / "h.desktop") << "[Desktop Entry]\nType=Link\nName=H\nExec=h\n";
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(DesktopEntriesTest, TheUsersEntryHidesTheSystems) {
    write(folders[1] / "kde" / "a.desktop", "Name=System\nExec=a\n");
    write(folders[0] / "kde-a.desktop", "Name=Mine\nExec=a\nNoDisplay=true\n");
    EXPECT_THAT(found(), IsEmpty());
    write(folders[0] / "kde-a.desktop", "Name=Mine\nExec=a\n");
    EXPECT_THAT(found(), ElementsAre("A=Mine"));
}

TEST_F(DesktopEntriesTest, FoldersThatLeadInCirclesEnd) {
    write(folders[1] / "a.desktop", "Name=A\nExec=a\n");
    fs::create_directory_symlink(folders[1], folders[1] / "again");
    EXPECT_THAT(found(), ElementsAre("A=A"));
}

TEST_F(DesktopEntriesTest, FoldersThatAreNotThereAreEmpty) {
    EXPECT_THAT(found(), IsEmpty());
}

/// Entries in a home of its own, and a window of a program that has none.
class DesktopEntryCatalogDriver {
public:
    static constexpr auto installed = "Mousepad";
    static constexpr auto running = "featherPad";

    DesktopEntryCatalogDriver() {
        ::setenv("XDG_DATA_HOME", files_.path().c_str(), 1);
        ::setenv("XDG_DATA_DIRS", "/nowhere", 1);
        const auto folder = files_.path() / "applications";
        write(folder / "org.xfce.mousepad.desktop", "Name=Mousepad\nExec=mousepad\n");
        write(folder / "com.quillane.app.desktop", "Name=Quillane\nExec=quillane\nStartupWMClass=quillane\n");
        write(folder / "featherpad.desktop", "Name=FeatherPad\nExec=featherpad\nStartupWMClass=featherPad\n");
        installed_ = std::make_shared<InstalledApplications>(queue_);
        catalog_ = std::make_unique<DesktopEntryCatalog>(installed_, [this] {
            const auto identifier = installed_->index().identifierOf("Featherpad");
            return std::vector<RunningApplication>{{.pid = 77, .bundleID = identifier, .name = "Featherpad"},
                                                   {.pid = 78, .bundleID = identifier, .name = "Featherpad"},
                                                   {.pid = 79, .bundleID = std::nullopt, .name = "secret"}};
        });
    }

    ~DesktopEntryCatalogDriver() {
        ::unsetenv("XDG_DATA_HOME");
        ::unsetenv("XDG_DATA_DIRS");
    }

    DesktopEntryCatalogDriver(const DesktopEntryCatalogDriver&) = delete;
    DesktopEntryCatalogDriver& operator=(const DesktopEntryCatalogDriver&) = delete;

    std::unique_ptr<ApplicationCatalog>& catalog() { return catalog_; }

    bool waitUntil(const std::function<bool()>& condition) {
        QTimer wake;
        wake.start(2);
        for (int turn = 0; turn < 2500 && !condition(); ++turn) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return condition();
    }

private:
    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QCoreApplication application_{argc_, argv_.data()};
    live::TemporaryFolder files_;
    QtMainQueue queue_;
    std::shared_ptr<InstalledApplications> installed_; // shared with the catalog
    std::unique_ptr<ApplicationCatalog> catalog_;
};

using DesktopEntryCatalogTest = testing::ApplicationCatalogContract<DesktopEntryCatalogDriver>;

TEST_F(DesktopEntryCatalogTest, ARunningProgramIsTheOneOfItsEntryHoweverItsWindowIsSpelled) {
    EXPECT_THAT(read(), ::testing::UnorderedElementsAre(KnownApplication{"Mousepad", "Mousepad", false},
                                                        KnownApplication{"featherPad", "FeatherPad", true}));
}

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ApplicationCatalogContract, DesktopEntryCatalogDriver);

} // namespace testing

} // namespace quillane
