// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/system/AutostartLoginItem.hpp"

#include "contracts/LoginItemContract.hpp"
#include "fakes/FakeLoginItemService.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include <sys/stat.h>

namespace quillane {
namespace {

class AutostartDriver {
public:
    LoginItemService& service() { return service_; }

private:
    live::TemporaryFolder files_;
    AutostartLoginItem service_{"/bin/sh", files_.path() / "config" / "autostart"};
};

class FakeDriver {
public:
    LoginItemService& service() { return service_; }

private:
    fakes::FakeLoginItemService service_;
};

class AutostartLoginItemTest : public ::testing::Test {
protected:
    [[nodiscard]] std::filesystem::path file() const { return folder / "com.quillane.app.desktop"; }

    [[nodiscard]] std::string content() const {
        std::ifstream in(file());
        return {std::istreambuf_iterator<char>(in), {}};
    }

    /// A program with this path below the temporary folder.
    [[nodiscard]] std::filesystem::path install(const std::string& path) const {
        const auto program = files.path() / path;
        std::filesystem::create_directories(program.parent_path());
        std::ofstream(program) << "#!/bin/sh\n";
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        return program;
    }

    live::TemporaryFolder files;
    std::filesystem::path folder = files.path() / "autostart";
};

TEST_F(AutostartLoginItemTest, TheEntryStartsTheProgramAtLoginWithItsPathQuoted) {
    AutostartLoginItem service("/opt/my apps/50%\"$`\\/quillane", folder);
    ASSERT_TRUE(service.enable());
    EXPECT_NE(content().find("[Desktop Entry]\nType=Application\n"), std::string::npos);
    EXPECT_NE(content().find("\nExec=\"/opt/my apps/50%%\\\\\"\\\\$\\\\`\\\\\\\\/quillane\" --at-login\n"),
              std::string::npos)
        << content();
}

TEST_F(AutostartLoginItemTest, EntryWhoseProgramIsGoneIsOff) {
    for (const auto* path : {"quillane", "my apps/50%\"$`\\/quillane's", "50%%f"}) {
        const auto program = install(path);
        AutostartLoginItem service(program, folder);
        ASSERT_TRUE(service.enable());
        EXPECT_EQ(service.status(), LoginItemStatus::enabled) << path;
        std::filesystem::permissions(program, std::filesystem::perms::owner_read);
        EXPECT_EQ(service.status(), LoginItemStatus::notRegistered) << path;
        std::filesystem::remove(program);
        EXPECT_EQ(service.status(), LoginItemStatus::notRegistered) << path;
    }
    std::ofstream(file()) << "[Desktop Entry]\nExec=sh --at-login\nTryExec=/nowhere/quillane\n";
    EXPECT_EQ(AutostartLoginItem("/bin/sh", folder).status(), LoginItemStatus::notRegistered);
    std::ofstream(file()) << "[Desktop Entry]\nExec=sh --at-login\nTryExec=sh\n";
    EXPECT_EQ(AutostartLoginItem("/bin/sh", folder).status(), LoginItemStatus::enabled);
}

TEST_F(AutostartLoginItemTest, AnEntryThatTheDesktopHasSwitchedOffIsOff) {
    AutostartLoginItem service("/bin/sh", folder);
    for (const auto* line : {"Hidden=true", "X-GNOME-Autostart-enabled=false", "Hidden = true"}) {
        ASSERT_TRUE(service.enable());
        std::ofstream(file(), std::ios::app) << line << '\n';
        EXPECT_EQ(service.status(), LoginItemStatus::notRegistered) << line;
        ASSERT_TRUE(service.enable());
        EXPECT_EQ(service.status(), LoginItemStatus::enabled) << line;
    }
}

TEST_F(AutostartLoginItemTest, FolderThatIsMadeIsPrivateAndTheEntryIsNobodyElsesToWriteWhateverTheMask) {
    for (const mode_t mask : {0U, 0777U}) {
        const mode_t before = ::umask(mask);
        const auto made = files.path() / std::to_string(mask) / "autostart";
        EXPECT_TRUE(AutostartLoginItem("/bin/sh", made).enable()) << mask;
        ::umask(before);
        const auto modeOf = [](const std::filesystem::path& path) {
            return static_cast<unsigned>(std::filesystem::status(path).permissions());
        };
        EXPECT_EQ(modeOf(made), 0700U) << mask;
        EXPECT_EQ(modeOf(made.parent_path()), 0700U) << mask;
        EXPECT_EQ(modeOf(made / "com.quillane.app.desktop"), 0644U) << mask;
    }
}

TEST_F(AutostartLoginItemTest, AFileThatIsNotAnEntryIsOff) {
    std::filesystem::create_directories(folder);
    AutostartLoginItem service("/usr/bin/quillane", folder);
    for (const auto* text :
         {"", "Exec=quillane\n", "[Other]\nExec=quillane\n", "[Desktop Entry]\nExec=\n", "\xff\n="}) {
        std::ofstream(file()) << text;
        EXPECT_EQ(service.status(), LoginItemStatus::notRegistered) << text;
    }
}

TEST_F(AutostartLoginItemTest, AFolderThatCannotBeMadeIsAFailure) {
    std::ofstream(folder) << "a file";
    AutostartLoginItem service("/usr/bin/quillane", folder);
    EXPECT_FALSE(service.enable());
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
}

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Autostart, LoginItemContract, AutostartDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, LoginItemContract, FakeDriver);

} // namespace testing
} // namespace quillane
