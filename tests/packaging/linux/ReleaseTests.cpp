// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "packaging/linux/Tools.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace quillane::packaging {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;

const std::string scripts = (source / "scripts").string();

live::CommandResult billOfMaterials(const std::string& desktop) {
    return run({scripts + "/lib/sbom", "1.2.3", desktop, (source / "LICENSE").string()},
               {{"SOURCE_DATE_EPOCH", "1700000000"}});
}

json packageNamed(const json& document, const std::string& name) {
    for (const auto& package : document.at("packages")) {
        if (package.at("name") == name) {
            return package;
        }
    }
    return {};
}

TEST(BillOfMaterials, ListsTheProgramAndItsLibrariesWithVersionAndLicence) {
    const auto result = billOfMaterials("Linux");
    ASSERT_TRUE(result.succeeded()) << result.errors;
    const auto document = json::parse(result.output);
    EXPECT_EQ(document.at("spdxVersion"), "SPDX-2.3");
    EXPECT_EQ(document.at("creationInfo").at("created"), "2023-11-14T22:13:20Z");
    EXPECT_EQ(packageNamed(document, "Quillane").at("versionInfo"), "1.2.3");
    EXPECT_EQ(packageNamed(document, "ICU: i18n, uc").at("versionInfo"), "72.1");
    EXPECT_EQ(packageNamed(document, "libdbus-1").at("licenseDeclared"), "AFL-2.1 OR GPL-2.0-or-later");
    EXPECT_TRUE(packageNamed(document, "Sparkle").is_null());
    EXPECT_EQ(document.at("files").at(0).at("fileName"), "./LICENSE");
}

TEST(BillOfMaterials, OfAMacHasItsLibraries) {
    const auto document = json::parse(billOfMaterials("macOS").output);
    EXPECT_EQ(packageNamed(document, "Sparkle").at("licenseDeclared"), "MIT");
    EXPECT_TRUE(packageNamed(document, "libdbus-1").is_null());
}

TEST(BillOfMaterials, RelatesEveryElementByAnIdentifierOfItsOwn) {
    const auto document = json::parse(billOfMaterials("Linux").output);
    std::map<std::string, int> elements;
    for (const auto* kind : {"packages", "files"}) {
        for (const auto& element : document.at(kind)) {
            ++elements[element.at("SPDXID").get<std::string>()];
        }
    }
    std::map<std::string, int> related;
    for (const auto& relation : document.at("relationships")) {
        ++related[relation.at("relatedSpdxElement").get<std::string>()];
    }
    EXPECT_EQ(elements, related);
    for (const auto& [identifier, count] : elements) {
        EXPECT_EQ(count, 1) << identifier;
    }
}

class ReleaseNotesTest : public ::testing::Test {
protected:
    ReleaseNotesTest() : folder_(live::TemporaryFolder::create("quillane-notes-").value()) {}

    [[nodiscard]] live::CommandResult notes(const std::string& version, const std::string& changelog) const {
        const auto file = folder_.path() / "CHANGELOG.md";
        EXPECT_TRUE(live::writeFile(file, changelog));
        return run({scripts + "/lib/release-notes", version, file});
    }

private:
    live::TemporaryFolder folder_;
};

TEST_F(ReleaseNotesTest, AreTheSectionOfTheVersion) {
    const auto* changelog =
        "# Changelog\n\n## [Unreleased]\n\n- later\n\n## [1.2.0] - 2030-01-02\n\n### Added\n\n- now\n\n"
        "## [1.1.0] - 2029-01-02\n\n- before\n";
    EXPECT_EQ(notes("1.2.0", changelog).output, "### Added\n\n- now\n");
    EXPECT_EQ(notes("1.1.0", changelog).output, "- before\n");
}

TEST_F(ReleaseNotesTest, FailWithoutADatedSectionOrAText) {
    EXPECT_FALSE(notes("1.2.0", "## [1.2.0]\n\n- now\n").succeeded());
    EXPECT_FALSE(notes("1.2.0", "## [1.2.0] - soon\n\n- now\n").succeeded());
    EXPECT_FALSE(notes("1.2.0", "## [1.2.0] - 2030-01-02\n\n## [1.1.0] - 2029-01-02\n\n- before\n").succeeded());
    EXPECT_FALSE(notes("1.3.0", "## [1.2.0] - 2030-01-02\n\n- now\n").succeeded());
}

/// A repository with the scripts and what a release looks at, which holds nothing that could be built.
class ReleaseTest : public ::testing::Test {
protected:
    void SetUp() override {
        QUILLANE_NEEDS("git");
        ASSERT_TRUE(shell("git init --quiet . && cp -R '" + scripts +
                          "' . && "
                          "printf '## [1.2.0] - 2030-01-02\\n\\n- now\\n' > CHANGELOG.md && "
                          "printf 'project(Quillane VERSION 1.2.0 LANGUAGES C)\\n' > CMakeLists.txt && "
                          "printf '#!/bin/sh\\nexit 0\\n' > scripts/install-dependencies && git add . && "
                          "git -c user.name=a -c user.email=a@b.example commit --quiet -m one")
                        .succeeded());
    }

    [[nodiscard]] live::CommandResult shell(const std::string& commands) const {
        return run({"sh", "-c", "cd '" + folder_.path().string() + "' && { " + commands + "; } 2>&1"});
    }

    [[nodiscard]] std::filesystem::path released(const std::string& name) const {
        return folder_.path() / "build/releases" / name;
    }

private:
    live::TemporaryFolder folder_ = live::TemporaryFolder::create("quillane-release-").value();
};

TEST_F(ReleaseTest, OfWhatIsNoTagOfAVersionIsRefused) {
    ASSERT_TRUE(shell("git tag nightly").succeeded());
    for (const auto* name : {"v1.2.0", "nightly", "HEAD"}) {
        const auto result = shell("scripts/release " + std::string(name));
        EXPECT_FALSE(result.succeeded());
        EXPECT_THAT(result.output, HasSubstr("is not a version tag"));
    }
}

TEST_F(ReleaseTest, WithAnotherVersionThanItsTagIsRefusedBeforeTheBuild) {
    ASSERT_TRUE(shell("git tag v1.3.0").succeeded());
    const auto result = shell("scripts/release v1.3.0");
    EXPECT_FALSE(result.succeeded());
    EXPECT_THAT(result.output, HasSubstr("CMakeLists.txt has version 1.2.0 and CHANGELOG.md 1.2.0"));
    EXPECT_FALSE(std::filesystem::exists(released("v1.3.0/notes.md")));
}

TEST_F(ReleaseTest, BeginsWithTheSourcesAndNotesOfTheTagWhateverLiesInTheWorkTree) {
    ASSERT_TRUE(shell("git tag v1.2.0 && echo changed >> CHANGELOG.md && echo new > scripts/new").succeeded());
    EXPECT_FALSE(shell("scripts/release v1.2.0").succeeded()); // there is nothing to build
    EXPECT_EQ(live::readFile(released("v1.2.0/notes.md")), "- now\n");
    const auto list = run({"tar", "--list", "--file", released("v1.2.0/quillane-1.2.0.tar.xz")}).output;
    EXPECT_THAT(list, HasSubstr("quillane-1.2.0/scripts/release\n"));
    EXPECT_THAT(list, ::testing::Not(HasSubstr("scripts/new")));
}

} // namespace
} // namespace quillane::packaging
