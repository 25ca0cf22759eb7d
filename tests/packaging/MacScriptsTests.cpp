// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace quillane {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

/// Runs the project's scripts for a Mac with stand-ins for programs that only a Mac has. Each records its calls;
/// environment variables control what it prints or refuses.
class MacScriptsTest : public ::testing::Test {
protected:
    struct Result {
        int status = 0;
        std::string output;
    };

    MacScriptsTest() {
        tool("uname", "[ \"$1\" = -m ] && echo arm64 || echo Darwin");
        tool("sw_vers", "echo 15.5");
        tool("brew", "[ \"$1\" != --prefix ] || echo /opt/homebrew; [ \"$2\" != check ] || exit ${BREW_CHECK:-0}");
        tool("cmake", "mkdir -p \"$QUILLANE_PACKAGE_FOLDER/build/Quillane.app/Contents/MacOS\" && "
                      "cp \"$PROGRAM\" \"$QUILLANE_PACKAGE_FOLDER/build/Quillane.app/Contents/MacOS/quillane\"");
        tool("ditto", "mkdir -p \"$(dirname \"$2\")\"; [ ! -d \"$1\" ] || cp -R \"$1\" \"$2\"");
        tool("macdeployqt", "mkdir -p \"$1/Contents/Frameworks\"; echo > \"$1/Contents/Frameworks/libicuuc.dylib\"");
        tool("file", "echo Mach-O");
        tool("lipo", "");
        tool("otool", "if [ \"$1\" = -l ]; then echo '      cmd LC_BUILD_VERSION'; echo \"    minos ${MINOS:-13.0}\"; "
                      "echo '  version 1115.7.3'; else echo \"$2:\"; echo \"\t${LIBRARY:-/usr/lib/libSystem.B.dylib} "
                      "(compatibility version 1.0.0, current version 1345.0.0)\"; fi");
        tool("codesign", "case \"$*\" in *\"${UNSIGNED:-nothing}\"*) exit 1 ;; esac");
        tool("hdiutil", "for last; do :; done; echo > \"$last\"");
        tool("security",
             "echo '  1) ABCDEF \"Apple Development: Somebody (TEAM)\"'; echo '     1 valid identities found'");
        tool("open", "");
        // Runs until it is asked to quit, unless it is broken.
        tool("program", "running=$(dirname \"$0\")/running; case $1 in --version) echo quillane 1 ;; "
                        "--at-login) [ -z \"$BROKEN\" ] || exit 1; echo > \"$running\"; "
                        "while [ -f \"$running\" ]; do sleep 0.05; done ;; "
                        "status) [ -f \"$running\" ] && echo '{}' ;; quit) rm -f \"$running\" ;; esac");
    }

    Result run(const std::string& script, const std::string& environment = "") {
        const auto folder = files_.path().string();
        const auto command = "cd " QUILLANE_SOURCE " && env HOME='" + folder + "' CALLS='" + folder +
                             "/calls' PROGRAM='" + folder + "/bin/program' QUILLANE_PACKAGE_FOLDER='" + folder +
                             "/package' PATH='" + folder + "/bin':\"$PATH\" " + environment + " " + script + " 2>&1";
        Result result;
        const auto close = [&](std::FILE* pipe) { result.status = pclose(pipe); };
        {
            const std::unique_ptr<std::FILE, decltype(close)> pipe(popen(command.c_str(), "r"), close);
            std::array<char, 4096> part{};
            while (const auto count = std::fread(part.data(), 1, part.size(), pipe.get())) {
                result.output.append(part.data(), count);
            }
        }
        return result;
    }

    /// Every call of one of the programs, one a line.
    [[nodiscard]] std::string calls() const {
        std::ifstream stream(files_.path() / "calls");
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    [[nodiscard]] bool imageWasMade() const { return std::filesystem::exists(files_.path() / "package/Quillane.dmg"); }

    [[nodiscard]] std::string cask() const {
        std::ifstream stream(files_.path() / "package/quillane.rb");
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static constexpr auto forOthers = "QUILLANE_SIGNING_IDENTITY='Developer ID Application: Somebody'";

private:
    void tool(const std::string& name, const std::string& body) {
        std::filesystem::create_directories(files_.path() / "bin");
        const auto path =
            files_.file("bin/" + name, "#!/bin/sh\necho \"" + name + " $*\" >> \"$CALLS\"\n" + body + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }

    live::TemporaryFolder files_;
};

TEST_F(MacScriptsTest, AStepEndsWithItsFirstFailureAndEndsTheScript) {
    const auto result = run(
        "bash -c 'source scripts/lib/steps.sh; fails() { false; echo went on; }; step Failing fails; echo went on'");
    EXPECT_NE(result.status, 0);
    EXPECT_THAT(result.output, Not(HasSubstr("went on")));
}

TEST_F(MacScriptsTest, AnAdHocPackageIsStartedAndHasNoHardenedRuntime) {
    const auto result = run("scripts/package-macos", "MINOS=15.0");
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_TRUE(imageWasMade());
    EXPECT_THAT(calls(),
                AllOf(HasSubstr("codesign"), Not(HasSubstr("--options runtime")), HasSubstr("program --at-login"),
                      HasSubstr("program status --json"), HasSubstr("program doctor"), HasSubstr("program quit")));
}

TEST_F(MacScriptsTest, AFailedSignatureStopsBeforeTheImage) {
    const auto result = run("scripts/package-macos", "UNSIGNED=libicuuc");
    EXPECT_NE(result.status, 0);
    EXPECT_FALSE(imageWasMade()) << result.output;
}

TEST_F(MacScriptsTest, AProgramThatDoesNotStartStopsBeforeTheImage) {
    const auto result = run("scripts/package-macos", "BROKEN=1");
    EXPECT_NE(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("does not answer"));
    EXPECT_FALSE(imageWasMade());
}

TEST_F(MacScriptsTest, APartForALaterSystemIsRefused) {
    const auto result = run("scripts/package-macos", "MINOS=15.10");
    EXPECT_NE(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("needs macOS 15.10"));
    EXPECT_FALSE(imageWasMade());
}

TEST_F(MacScriptsTest, ALibraryOutsideTheBundleIsRefused) {
    const auto result = run("scripts/package-macos", "LIBRARY=/opt/homebrew/lib/libicuuc.74.dylib");
    EXPECT_NE(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("loads /opt/homebrew/lib/libicuuc.74.dylib"));
    EXPECT_FALSE(imageWasMade());
}

TEST_F(MacScriptsTest, APackageForOthersNeedsKeyFeedAndServer) {
    const auto bare = run("scripts/package-macos", forOthers);
    EXPECT_NE(bare.status, 0);
    EXPECT_THAT(bare.output, AllOf(HasSubstr("QUILLANE_UPDATE_KEY"), HasSubstr("QUILLANE_UPDATE_FEED"),
                                   HasSubstr("QUILLANE_DEFAULT_SHARE_SERVER")));
    const std::string settings = std::string(forOthers) +
                                 " QUILLANE_UPDATE_KEY=key QUILLANE_UPDATE_FEED=https://a.org/f "
                                 "QUILLANE_DEFAULT_SHARE_SERVER=https://share.";
    EXPECT_THAT(run("scripts/package-macos", settings + "quillane.example").output,
                AllOf(HasSubstr("QUILLANE_DEFAULT_SHARE_SERVER"), Not(HasSubstr("QUILLANE_UPDATE_KEY"))));
    EXPECT_THAT(calls(), Not(HasSubstr("cmake")));
    const auto complete = run("scripts/package-macos", settings + "a.org");
    EXPECT_EQ(complete.status, 0) << complete.output;
    EXPECT_THAT(calls(), AllOf(HasSubstr("-DQUILLANE_UPDATE_KEY=key"),
                               HasSubstr("-DQUILLANE_DEFAULT_SHARE_SERVER=https://share.a.org"),
                               HasSubstr("--options runtime")));
}

TEST_F(MacScriptsTest, CaskHasTheVersionTheAddressAndTheDigestOfTheImage) {
    const auto result = run("scripts/package-macos", "QUILLANE_DOWNLOADS=https://a.org/get");
    EXPECT_EQ(result.status, 0) << result.output;
    // The image of the stand-in is one empty line.
    EXPECT_THAT(cask(), AllOf(HasSubstr("version \"" QUILLANE_VERSION "\"\n"),
                              HasSubstr("\"https://a.org/get/v#{version}/Quillane.dmg\""),
                              HasSubstr("\"01ba4719c80b6fe911b091a7c05124b64eeece964e09c058ef8f9805daca546b\""),
                              Not(HasSubstr("@"))));
}

TEST_F(MacScriptsTest, RunOpensASignedCopyInTheUsersApplications) {
    const auto result = run("scripts/run --at-login");
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_THAT(calls(),
                AllOf(HasSubstr("--sign Apple Development: Somebody (TEAM)"),
                      HasSubstr("/Applications/Quillane.app --args --at-login"), Not(HasSubstr("bundle install"))));
}

TEST_F(MacScriptsTest, OnlyMissingPackagesAreInstalled) {
    EXPECT_EQ(run("scripts/install-dependencies", "BREW_CHECK=1").status, 0);
    EXPECT_THAT(calls(), HasSubstr("brew bundle install --no-upgrade"));
}

/// macOS has bash 3.2: these run there before Homebrew's is installed.
TEST(MacScripts, NeedNothingThatBash32Lacks) {
    for (const auto* script : {"run", "test", "install-dependencies", "package-macos", "lib/steps.sh", "lib/tests.sh",
                               "lib/make-icon", "lib/make-cask", "lib/install-application"}) {
        std::ifstream stream(std::filesystem::path(QUILLANE_SOURCE) / "scripts" / script);
        ASSERT_TRUE(stream) << script;
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        for (const auto* construct :
             {"mapfile", "readarray", "declare -A", "wait -n", "&>>", "|&", "^^}", ",,}", "coproc"}) {
            EXPECT_THAT(text, Not(HasSubstr(construct))) << script;
        }
    }
}

} // namespace
} // namespace quillane
