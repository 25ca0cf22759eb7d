// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "support/TemporaryFolder.hpp"

#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace quillane {
namespace {

/// The release archive of the updater, as CMake unpacks it at configure time where Homebrew has none.
class SparkleArchiveTest : public ::testing::Test {
protected:
    SparkleArchiveTest() {
        const auto framework = folder / "made/Sparkle.framework";
        std::filesystem::create_directories(framework / "Versions/B");
        std::ofstream(framework / "Versions/B/Sparkle") << "library";
        std::filesystem::create_symlink("Versions/B/Sparkle", framework / "Sparkle");
        run("cd '" + (folder / "made").string() + "' && cmake -E tar cJf ../archive.tar.xz Sparkle.framework");
        std::ofstream(folder / "unpack.cmake") << "include(" QUILLANE_SOURCE "/cmake/MacBundle.cmake)\n"
                                                  "quillane_unpack_sparkle(${ARCHIVE} ${SHA256} ${FOLDER})\n";
    }

    static std::string run(const std::string& command) {
        const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen((command + " 2>&1").c_str(), "r"), &pclose);
        std::string output;
        std::array<char, 4096> buffer{};
        for (std::size_t count = 0; (count = fread(buffer.data(), 1, buffer.size(), pipe.get())) > 0;) {
            output.append(buffer.data(), count);
        }
        return output;
    }

    [[nodiscard]] std::string checksum() const {
        return run("cmake -E sha256sum '" + archive.string() + "'").substr(0, 64);
    }

    [[nodiscard]] std::string unpack(const std::string& sha256) const {
        return run("cmake -DARCHIVE=file://" + archive.string() + " -DSHA256=" + sha256 +
                   " -DFOLDER=" + (folder / "unpacked").string() + " -P " + (folder / "unpack.cmake").string());
    }

    live::TemporaryFolder files;
    std::filesystem::path folder = files.path();
    std::filesystem::path archive = folder / "archive.tar.xz";
    std::filesystem::path library = folder / "unpacked/Sparkle.framework/Sparkle";
};

TEST_F(SparkleArchiveTest, IsUnpackedWithItsLinks) {
    EXPECT_EQ(unpack(checksum()), "");
    EXPECT_TRUE(std::filesystem::is_symlink(library));
    EXPECT_EQ(std::filesystem::file_size(library), 7U);
}

TEST_F(SparkleArchiveTest, IsUnpackedOnce) {
    EXPECT_EQ(unpack(checksum()), "");
    std::filesystem::remove(archive);
    EXPECT_EQ(unpack(std::string(64, '0')), "");
}

TEST_F(SparkleArchiveTest, AnotherChecksumIsAnError) {
    EXPECT_THAT(unpack(std::string(64, '0')), ::testing::HasSubstr("HASH mismatch"));
    EXPECT_FALSE(std::filesystem::exists(library));
}

} // namespace
} // namespace quillane
