// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "packaging/linux/Tools.hpp"

#include <gmock/gmock.h>

#include <regex>

namespace quillane::packaging {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::Not;

const fs::path packages = QUILLANE_PACKAGES;
const std::string package = (packages / "new/quillane.deb").string();

/// The package that the build made; skipped where packages cannot be made.
class DebianPackageTest : public ::testing::Test {
protected:
    void SetUp() override {
        QUILLANE_NEEDS("dpkg-shlibdeps");
        QUILLANE_NEEDS("patchelf");
        ASSERT_TRUE(fs::exists(package)) << "the target quillane_packages makes it";
    }

    [[nodiscard]] static std::string field(const std::string& name) {
        return run({"dpkg-deb", "--field", package, name}).output;
    }
};

TEST_F(DebianPackageTest, DependsOnWhatIsLinkedAndOnWhatIsLoadedAtRunTime) {
    const auto depends = field("Depends");
    for (const auto* name :
         {"libc6 ", "libqt6core6 ", "libqt6dbus6 ", "libqt6gui6 ", "libqt6svg6 ", "libqt6widgets6 ", "libicu72 ",
          "libssl3 ", "libplist3 ", "liburiparser1 ", "libqrencode4 ", "libsecret-1-0 ", "libdbus-1-3 ",
          "libglib2.0-0 ", "libxcb1 ", "libxcb-xinput0 ", "libxkbcommon0 ", "libxkbregistry0 "}) {
        EXPECT_THAT(depends, HasSubstr(name));
    }
    EXPECT_THAT(depends, HasSubstr("libcurl4")); // loaded by CurlLibrary
    EXPECT_THAT(field("Recommends"), HasSubstr("at-spi2-core"));
}

TEST_F(DebianPackageTest, HoldsWhatBelongsToAnInstalledProgram) {
    std::vector<std::string> files;
    std::istringstream list(run({"dpkg-deb", "--contents", package}).output);
    for (std::string line; std::getline(list, line);) {
        EXPECT_THAT(line, HasSubstr("root/root"));
        if (line.back() != '/') {
            files.push_back(line.substr(line.find("./") + 2));
        }
    }
    std::ranges::sort(files);
    EXPECT_THAT(
        files,
        ElementsAreArray(
            {"usr/bin/quillane", "usr/libexec/quillane-keyboard-guard",
             "usr/share/Thunar/sendto/quillane-share.desktop", "usr/share/applications/com.quillane.app.desktop",
             "usr/share/bash-completion/completions/quillane", "usr/share/doc/quillane/changelog.Debian.gz",
             "usr/share/doc/quillane/changelog.gz", "usr/share/doc/quillane/copyright",
             "usr/share/file-manager/actions/quillane-share.desktop",
             "usr/share/fish/vendor_completions.d/quillane.fish",
             "usr/share/icons/hicolor/scalable/apps/com.quillane.app.svg",
             "usr/share/icons/hicolor/symbolic/apps/com.quillane.app-symbolic.svg",
             "usr/share/kio/servicemenus/quillane-share.desktop", "usr/share/lintian/overrides/quillane",
             "usr/share/man/man1/quillane.1.gz", "usr/share/metainfo/com.quillane.app.metainfo.xml",
             "usr/share/nemo/actions/quillane-share.nemo_action", "usr/share/zsh/vendor-completions/_quillane"}));
}

TEST_F(DebianPackageTest, HasNoScriptsThatRunWhenItIsInstalledOrRemoved) {
    EXPECT_EQ(linesOf(run({"sh", "-c", "dpkg-deb --ctrl-tarfile \"$0\" | tar --list", package}).output),
              (std::vector<std::string>{"./", "./control", "./md5sums"}));
}

TEST_F(DebianPackageTest, LintianFindsNothingThatIsNotExplained) {
    QUILLANE_NEEDS("lintian");
    const auto result =
        run({"lintian", "--allow-root", "--fail-on", "error,warning", package}, {}, std::chrono::seconds{50});
    EXPECT_TRUE(result.succeeded()) << result.errors;
    EXPECT_EQ(result.output, "");
    // Every override stands below the comment that explains it.
    const std::regex explained("(# .*\n)+quillane: [^\n]+\n");
    const auto overrides = live::readFile(linuxFolder / "lintian-overrides");
    EXPECT_EQ(std::regex_replace(overrides, explained, ""), "");
}

TEST_F(DebianPackageTest, AnotherBuildAtAnotherTimeUnderAnotherMaskHasTheSameBytes) {
    EXPECT_NE(live::readFile(package), "");
    EXPECT_EQ(live::readFile(package), live::readFile(packages / "again/quillane.deb"));
}

TEST_F(DebianPackageTest, TheProgramHoldsNoPathOfTheMachineThatBuiltIt) {
    const auto folder = live::TemporaryFolder::create("quillane-package-");
    ASSERT_TRUE(folder) << folder.error();
    ASSERT_TRUE(run({"dpkg-deb", "--extract", package, folder->path()}).succeeded());
    const auto program = live::readFile(folder->path() / "usr/bin/quillane");
    EXPECT_THAT(program, Not(HasSubstr(source.string())));
    EXPECT_THAT(program, HasSubstr("usage: quillane"));
}

} // namespace
} // namespace quillane::packaging
