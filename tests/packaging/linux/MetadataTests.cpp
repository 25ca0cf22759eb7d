// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "packaging/linux/Tools.hpp"

#include <gmock/gmock.h>

#include <iterator>
#include <regex>
#include <set>

namespace quillane::packaging {
namespace {

using ::testing::HasSubstr;

const std::string metainfo = QUILLANE_METAINFO;

TEST(Metainfo, IsValid) {
    QUILLANE_NEEDS("appstreamcli");
    const auto result = run({"appstreamcli", "validate", "--no-net", "--pedantic", metainfo});
    EXPECT_TRUE(result.succeeded()) << result.output << result.errors;
}

TEST(Metainfo, ListsTheReleasesOfTheChangelog) {
    const auto text = live::readFile(metainfo);
    const auto changelog = live::readFile(source / "CHANGELOG.md");
    const std::regex heading("\n## \\[([0-9.]+)\\] - ([0-9-]+)\n");
    int count = 0;
    for (auto it = std::sregex_iterator(changelog.begin(), changelog.end(), heading); it != std::sregex_iterator();
         ++it) {
        EXPECT_THAT(text, HasSubstr("<release version=\"" + (*it)[1].str() + "\" date=\"" + (*it)[2].str() + "\"/>"));
        ++count;
    }
    EXPECT_GT(count, 0);
}

TEST(Metainfo, StandsInThreeLanguages) {
    const auto text = live::readFile(metainfo);
    for (const auto* language : {"", " xml:lang=\"he\"", " xml:lang=\"ar\""}) {
        EXPECT_THAT(text, HasSubstr("<summary" + std::string(language) + ">"));
    }
}

class DesktopEntryFileTest : public ::testing::TestWithParam<const char*> {};

TEST_P(DesktopEntryFileTest, IsValid) {
    QUILLANE_NEEDS("desktop-file-validate");
    const auto result = run({"desktop-file-validate", (linuxFolder / GetParam()).string()});
    EXPECT_TRUE(result.succeeded());
    EXPECT_EQ(result.output + result.errors, "");
}

// The other entries of file managers are of types that desktop-file-validate does not know.
INSTANTIATE_TEST_SUITE_P(In, DesktopEntryFileTest,
                         ::testing::Values("com.quillane.app.desktop", "file-managers/thunar-sendto.desktop"),
                         [](const auto& parameter) {
                             return std::regex_replace(std::string(parameter.param), std::regex("[^a-z]"), "_");
                         });

TEST(FlatpakManifest, NamesTheProgramAndFixesEverySourceByItsDigest) {
    const auto text = live::readFile(source / "packaging/flatpak/com.quillane.app.yml");
    EXPECT_THAT(text, HasSubstr("\nid: com.quillane.app\n"));
    EXPECT_THAT(text, HasSubstr("\ncommand: quillane\n"));
    const std::regex archive("type: archive\n");
    const std::regex fixedArchive("type: archive\n +url: https://[^ \n]+\n +sha256: [0-9a-f]{64}\n");
    const auto count = [&](const std::regex& pattern) {
        return std::distance(std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator());
    };
    EXPECT_GT(count(archive), 0);
    EXPECT_EQ(count(archive), count(fixedArchive));
}

TEST(FlatpakManifest, LetsTheProgramReachEveryServiceThatItCalls) {
    const auto text = live::readFile(source / "packaging/flatpak/com.quillane.app.yml");
    const std::regex service(
        "\"(org\\.(?:a11y\\.Bus|freedesktop\\.(?:Notifications|ScreenSaver|secrets|login1)|gnome\\.SessionManager))\"");
    std::set<std::string> called;
    for (const auto& file : std::filesystem::recursive_directory_iterator(source / "src/platform/linux")) {
        const auto code = file.is_regular_file() ? live::readFile(file.path()) : std::string();
        for (auto it = std::sregex_iterator(code.begin(), code.end(), service); it != std::sregex_iterator(); ++it) {
            called.insert((*it)[1]);
        }
    }
    EXPECT_EQ(called.size(), 6U);
    for (const auto& name : called) {
        EXPECT_THAT(text, HasSubstr("talk-name=" + name + "\n"));
    }
}

TEST(SymbolicIcon, IsFilledInOneColor) {
    const auto text = live::readFile(linuxFolder / "icons/com.quillane.app-symbolic.svg");
    const std::regex color("#[0-9a-f]{6}");
    EXPECT_NE(text, "");
    EXPECT_EQ(text.find("stroke"), std::string::npos); // toolkits fill every path
    for (auto it = std::sregex_iterator(text.begin(), text.end(), color); it != std::sregex_iterator(); ++it) {
        EXPECT_EQ(it->str(), "#2e3436"); // which toolkits replace by the color of the text
    }
}

} // namespace
} // namespace quillane::packaging
