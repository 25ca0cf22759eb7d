// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardOptions.hpp"
#include "packaging/linux/Tools.hpp"
#include "platform/linux/system/AutostartLoginItem.hpp"

#include <gmock/gmock.h>

#include <glib.h>
#include <memory>
#include <span>

#include <unistd.h>

namespace quillane::packaging {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;

std::string inBase64(std::span<const std::byte> bytes) {
    const std::unique_ptr<char, decltype(&g_free)> text(
        g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()), g_free);
    return text.get();
}

/// Runs a script of tests/packaging/linux/root in a minimal Debian 12 of its own, for a user whose settings say Hebrew
/// and a history that is kept, and whom Quillane greets at login.
class DebianRootTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "needs root, to mount and to enter a root of its own";
        }
        QUILLANE_NEEDS("mmdebstrap");
        QUILLANE_NEEDS("dpkg-shlibdeps");
        QUILLANE_NEEDS("patchelf");
        if (!run({"unshare", "--mount", "--pid", "--net", "--fork", "true"}).succeeded()) {
            GTEST_SKIP() << "namespaces are not permitted here";
        }
        const auto made = run({(source / "scripts/lib/debian-root").string(), packages_ / "new/quillane.deb"}, {},
                              std::chrono::minutes{20});
        if (!made.succeeded()) {
            GTEST_SKIP() << "no root could be made, which needs a network once: " << made.errors;
        }
        root_ = made.output.substr(0, made.output.find('\n'));
        makeHome();
    }

    /// Gives a file to the scripts, as /given/NAME.
    void give(const fs::path& file, const std::string& name) const { fs::copy_file(file, given_.path() / name); }

    [[nodiscard]] live::CommandResult enter(const std::string& script) const {
        return run({(source / "tests/packaging/linux/root/enter").string(), root_, given_.path(), script}, {},
                   std::chrono::minutes{8});
    }

    const fs::path packages_ = QUILLANE_PACKAGES;

private:
    void makeHome() const {
        const auto settings = given_.path() / "home/.config/quillane";
        fs::create_directories(settings);
        core::ClipboardOptions history;
        history.enabled = true;
        history.persist = true;
        const auto options = core::encodeClipboardOptions(history);
        const std::string language = R"({"language":"he","userSelectedLanguage":true})";
        ASSERT_TRUE(live::writeFile(
            settings / "defaults.plist",
            std::string(R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>)") +
                core::clipboardOptionsKey + "</key><data>" + inBase64(std::as_bytes(std::span(options))) +
                "</data><key>QuillaneInstallationV1</key><data>" + inBase64(std::as_bytes(std::span(language))) +
                "</data></dict></plist>\n"));
        ASSERT_TRUE(AutostartLoginItem("/usr/bin/quillane", given_.path() / "home/.config/autostart").enable());
    }

    live::TemporaryFolder given_ = live::TemporaryFolder::create("quillane-root-").value();
    std::string root_;
};

TEST_F(DebianRootTest, PackageInstallsRunsUpgradesAndIsRemovedAndTheUsersFilesStay) {
    give(packages_ / "older/quillane.deb", "older.deb");
    give(packages_ / "new/quillane.deb", "newer.deb");
    const auto result = enter("package");
    EXPECT_TRUE(result.succeeded()) << result.output << result.errors;
    EXPECT_THAT(result.output, HasSubstr("ok: purged"));
    EXPECT_THAT(result.output, Not(HasSubstr("FAILED")));
    std::fputs(result.output.c_str(), stdout);
}

TEST_F(DebianRootTest, ArchiveRunsWhereItIsUnpackedWithoutQtInTheSystem) {
    give(packages_ / "archive.tar", "archive.tar");
    const auto result = enter("archive");
    EXPECT_TRUE(result.succeeded()) << result.output << result.errors;
    EXPECT_THAT(result.output, HasSubstr("ok: the archive runs"));
    std::fputs(result.output.c_str(), stdout);
}

} // namespace
} // namespace quillane::packaging
