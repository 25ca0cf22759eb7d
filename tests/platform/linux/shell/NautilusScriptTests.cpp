// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/shell/NautilusScript.hpp"

#include "platform/linux/shell/CommandServicesMenu.hpp"
#include "platform/linux/x11/X11TestServer.hpp"
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace quillane {
namespace {

namespace fs = std::filesystem;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class NautilusScriptTest : public ::testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> found;
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(folder_, error)) {
            found.push_back(entry.path().filename().string());
        }
        return found;
    }

    [[nodiscard]] static std::string contentOf(const fs::path& file) {
        std::ifstream in(file);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    live::TemporaryFolder files_;
    fs::path folder_ = files_.path() / "nautilus" / "scripts";
    fs::path program_ = files_.path() / "it's" / "quillane";
    NautilusScript script_{program_, folder_};
};

TEST_F(NautilusScriptTest, RunsTheCommandWithTheChosenFiles) {
    fs::create_directories(program_.parent_path());
    const auto log = files_.path() / "log";
    std::ofstream(program_) << "#!/bin/sh\nprintf '%s\\n' \"$@\" >'" << log.string() << "'\n";
    fs::permissions(program_, fs::perms::owner_all);
    EXPECT_FALSE(script_.exists());
    ASSERT_TRUE(script_.write("שיתוף באמצעות Quillane"));
    EXPECT_TRUE(script_.exists());
    const auto file = folder_ / "שיתוף באמצעות Quillane";
    EXPECT_EQ(testing::run({file.string(), "a b", "-c"}), 0);
    EXPECT_EQ(contentOf(log), "share\na b\n-c\n");
}

TEST_F(NautilusScriptTest, HasOneTitleAtATimeAndLeavesOtherScriptsAlone) {
    fs::create_directories(folder_ / "Folder");
    std::ofstream(folder_ / "Mine") << "#!/bin/sh\n";
    ASSERT_TRUE(script_.write("First"));
    ASSERT_TRUE(script_.write("Second"));
    EXPECT_THAT(names(), UnorderedElementsAre("Folder", "Mine", "Second"));
    EXPECT_FALSE(script_.write("Mine"));
    EXPECT_EQ(contentOf(folder_ / "Mine"), "#!/bin/sh\n");
    ASSERT_TRUE(script_.remove());
    EXPECT_FALSE(script_.exists());
    EXPECT_THAT(names(), UnorderedElementsAre("Folder", "Mine"));
    EXPECT_TRUE(script_.remove());
}

TEST_F(NautilusScriptTest, FolderThatCannotBeMadeIsAFailure) {
    std::ofstream(files_.path() / "nautilus") << "a file";
    EXPECT_FALSE(script_.write("Title"));
    EXPECT_FALSE(script_.exists());
}

TEST_F(NautilusScriptTest, ServicesMenuOffersItOnlyWhereThereIsTheFileManager) {
    CommandServicesMenu without(std::nullopt);
    EXPECT_EQ(without.hasUserEntry(), std::nullopt);
    EXPECT_FALSE(without.setUserEntry("Title"));
    CommandServicesMenu menu(script_);
    EXPECT_EQ(menu.hasUserEntry(), false);
    EXPECT_TRUE(menu.setUserEntry("Title"));
    EXPECT_EQ(menu.hasUserEntry(), true);
    EXPECT_TRUE(menu.setUserEntry(std::nullopt));
    EXPECT_THAT(names(), IsEmpty());
}

} // namespace
} // namespace quillane
