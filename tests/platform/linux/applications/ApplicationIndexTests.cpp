// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/ApplicationIndex.hpp"

#include "core/clipboard/ClipboardPrivacy.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace quillane {

namespace {

using ::testing::ElementsAre;

const DesktopEntry told{.id = "gimp-2.10", .name = "GIMP", .windowClass = "Gimp-2.10", .program = "gimp"};
const DesktopEntry named{.id = "org.gnome.Nautilus", .name = "Files", .program = "nautilus"};
const DesktopEntry settings{.id = "org.gnome.Nautilus-settings", .name = "Files' settings", .program = "nautilus"};

/// The classes and instances of one application's windows.
struct Spelling {
    const char* windowClass;
    const char* instance;
    const char* identifier;
};

void PrintTo(const Spelling& spelling, std::ostream* out) {
    *out << spelling.instance << ", " << spelling.windowClass;
}

class ApplicationSpellingTest : public ::testing::TestWithParam<Spelling> {};

TEST_P(ApplicationSpellingTest, IsTheOneIdentifierOfTheApplication) {
    const ApplicationIndex index(std::vector{settings, told, named});
    const auto& [windowClass, instance, identifier] = GetParam();
    EXPECT_EQ(index.identifierOf(windowClass, instance), identifier);
    EXPECT_EQ(index.identifierOf(identifier), identifier);
}

INSTANTIATE_TEST_SUITE_P(Windows, ApplicationSpellingTest,
                         ::testing::Values(Spelling{"Gimp-2.10", "gimp-2.10", "Gimp-2.10"},
                                           Spelling{"gimp-2.10", "", "Gimp-2.10"},
                                           Spelling{"gimp", "toolbox", "Gimp-2.10"},
                                           Spelling{"Something", "gimp", "Gimp-2.10"},
                                           Spelling{"Nautilus", "nautilus", "Nautilus"},
                                           Spelling{"org.gnome.Nautilus", "org.gnome.Nautilus", "Nautilus"},
                                           Spelling{"Org.gnome.nautilus", "", "Nautilus"},
                                           Spelling{"Unheard-of", "unheard-of", "Unheard-of"}, Spelling{"", "gimp", ""},
                                           Spelling{"Chromium", "", "org.chromium.Chromium"},
                                           Spelling{"com.Bitwarden.Desktop", "", "com.bitwarden.desktop"},
                                           Spelling{"KeePassXC", "keepassxc", "org.keepassxc.keepassxc"}));

TEST(ApplicationIndex, AnExcludedApplicationIsIgnoredWhateverItsWindowsAreCalled) {
    const ApplicationIndex index(std::vector{told, named});
    std::vector<std::string> excluded; // before any of them has run
    for (const auto& one : index.applications()) {
        excluded.push_back(one.bundleID);
    }
    for (const auto* windowClass : {"org.gnome.Nautilus", "Nautilus", "gimp", "Gimp-2.10"}) {
        EXPECT_TRUE(core::clipboardPrivacy::shouldIgnore({}, "", index.identifierOf(windowClass), excluded, false))
            << windowClass;
    }
    EXPECT_FALSE(core::clipboardPrivacy::shouldIgnore({}, "", index.identifierOf("Other"), excluded, false));
}

TEST(ApplicationIndex, AnApplicationWithManyEntriesIsShownOnceByItsMainOne) {
    const ApplicationIndex index(std::vector{settings, named});
    EXPECT_THAT(index.applications(), ElementsAre(KnownApplication{.bundleID = "Nautilus", .name = "Files"}));
}

TEST(ApplicationIndex, ADeclaredClassTakesPrecedenceOverAnotherEntrysName) {
    const DesktopEntry called{.id = "viewer", .name = "Old", .program = "old"};
    const DesktopEntry tells{.id = "org.example.V", .name = "New", .windowClass = "Viewer", .program = "new"};
    EXPECT_EQ(ApplicationIndex(std::vector{called, tells}).identifierOf("viewer"), "Viewer");
}

TEST(ApplicationIndex, EntriesOfOneApplicationMayBeSpelledDifferently) {
    const DesktopEntry one{.id = "a", .name = "A", .windowClass = "Tool"};
    const DesktopEntry other{.id = "bb", .name = "B", .windowClass = "tool"};
    const ApplicationIndex index(std::vector{one, other});
    EXPECT_EQ(index.identifierOf("bb"), "Tool");
    EXPECT_EQ(index.applications().size(), 1U);
}

TEST(ApplicationIndex, WithoutEntriesAClassStandsForItself) {
    const ApplicationIndex index;
    EXPECT_EQ(index.identifierOf("Mousepad", "mousepad"), "Mousepad");
    EXPECT_EQ(index.identifierOf("org.remmina.Remmina"), "com.apple.ScreenSharing");
    EXPECT_EQ(index.identifierOf(""), "");
    EXPECT_FALSE(index.knows("Mousepad", "mousepad"));
    EXPECT_TRUE(index.knows("chromium"));
}

} // namespace

} // namespace quillane
