// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/system/PropertyListDefaults.hpp"

#include "contracts/UserDefaultsContract.hpp"
#include "core/propertylist/PropertyList.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace quillane {
namespace {

namespace fs = std::filesystem;
using core::PropertyListValue;

class PropertyListDefaultsDriver {
public:
    core::UserDefaults& defaults() { return *defaults_; }

    void restart() {
        defaults_.reset();
        defaults_ = std::make_unique<PropertyListDefaults>(file_);
    }

private:
    live::TemporaryFolder files_;
    fs::path file_ = files_.path() / "config" / "defaults.plist";
    std::unique_ptr<PropertyListDefaults> defaults_ = std::make_unique<PropertyListDefaults>(file_);
};

/// File permissions do not hold for the superuser: while this lives, a test that runs as root touches files as nobody.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (user_ == 0 && ::seteuid(65534) != 0) {
            throw std::runtime_error("seteuid");
        }
    }

    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    ~OrdinaryUser() {
        if (user_ == 0 && ::seteuid(0) != 0) {
            std::abort();
        }
    }

private:
    uid_t user_ = ::geteuid();
};

class PropertyListDefaultsTest : public ::testing::Test {
protected:
    void SetUp() override { fs::create_directory(folder_); }

    [[nodiscard]] static std::string read(const fs::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    void write(std::string_view content) const { std::ofstream(file_, std::ios::binary) << content; }

    /// The file of a program that has stored a few settings.
    [[nodiscard]] std::string sampleFile() const {
        PropertyListDefaults(file_).setObjects(
            {{"Flag", true}, {"List", PropertyListValue::Array{"he"}}, {"שם", "ערך"}});
        return read(file_);
    }

    [[nodiscard]] std::vector<fs::path> damagedFiles() const {
        std::vector<fs::path> found;
        for (const auto& entry : fs::directory_iterator(folder_)) {
            if (entry.path().filename().string().starts_with("defaults.plist.damaged-")) {
                found.push_back(entry.path());
            }
        }
        return found;
    }

    void removeDamagedFiles() const {
        for (const auto& file : damagedFiles()) {
            fs::remove(file);
        }
    }

    [[nodiscard]] static mode_t mode(const fs::path& path) {
        struct stat status {};

        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    [[nodiscard]] static ino_t identity(const fs::path& path) {
        struct stat status {};

        return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
    }

    live::TemporaryFolder files_;
    fs::path folder_ = files_.path() / "quillane";
    fs::path file_ = folder_ / "defaults.plist";
};

TEST_F(PropertyListDefaultsTest, CreatesNothingBeforeTheFirstChange) {
    fs::remove(folder_);
    const PropertyListDefaults defaults(file_);
    EXPECT_EQ(defaults.object("Key"), std::nullopt);
    EXPECT_EQ(defaults.lastError(), std::nullopt);
    EXPECT_FALSE(fs::exists(folder_));
}

TEST_F(PropertyListDefaultsTest, TheFileAndItsFolderAreTheUsersAlone) {
    fs::remove(folder_);
    PropertyListDefaults(file_).setObject("Key", true);
    EXPECT_EQ(mode(folder_), 0700U);
    EXPECT_EQ(mode(file_), 0600U);
}

TEST_F(PropertyListDefaultsTest, EachChangeIsOnTheDiskWhenTheCallReturns) {
    PropertyListDefaults defaults(file_);
    defaults.setObject("Key", "one");
    EXPECT_EQ(PropertyListDefaults(file_).string("Key"), "one");
    defaults.setObjects({{"Key", "two"}, {"Other", true}});
    EXPECT_EQ(PropertyListDefaults(file_).string("Key"), "two");
    defaults.removeObject("Key");
    EXPECT_EQ(PropertyListDefaults(file_).object("Key"), std::nullopt);
    EXPECT_EQ(PropertyListDefaults(file_).boolean("Other"), true);
}

TEST_F(PropertyListDefaultsTest, NoteIsWrittenWithTheNextChangeOrAtTheEnd) {
    {
        PropertyListDefaults defaults(file_);
        defaults.setObject("Key", "one");
        const auto before = identity(file_);
        defaults.note("Note", "first");
        EXPECT_EQ(defaults.string("Note"), "first");
        EXPECT_EQ(identity(file_), before);
        defaults.setObject("Key", "two");
        EXPECT_EQ(PropertyListDefaults(file_).string("Note"), "first");
        defaults.note("Note", "second");
    }
    EXPECT_EQ(PropertyListDefaults(file_).string("Note"), "second");
}

TEST_F(PropertyListDefaultsTest, AValueThatIsThereAlreadyIsNotWrittenAgain) {
    PropertyListDefaults defaults(file_);
    defaults.setObjects({{"Key", "one"}, {"Other", true}});
    const auto before = identity(file_);
    defaults.setObject("Key", "one");
    defaults.setObjects({{"Key", "one"}, {"Other", true}});
    defaults.removeObject("Missing");
    EXPECT_EQ(identity(file_), before);
    defaults.setObject("Key", "two");
    EXPECT_NE(identity(file_), before);
}

TEST_F(PropertyListDefaultsTest, SeveralValuesAreOneWrite) {
    PropertyListDefaults defaults(file_);
    defaults.setObject("Key", true);
    const std::ifstream holdsTheFirstFile(file_); // so that its inode is not reused
    const auto first = identity(file_);
    defaults.setObjects({{"A", true}, {"B", true}, {"C", true}});
    EXPECT_NE(identity(file_), first);
    EXPECT_EQ(PropertyListDefaults(file_).boolean("C"), true);
}

TEST_F(PropertyListDefaultsTest, ReadsAnXmlFileAndWritesABinaryOne) {
    write("<plist version=\"1.0\"><dict><key>Flag</key><false/></dict></plist>");
    PropertyListDefaults defaults(file_);
    EXPECT_EQ(defaults.boolean("Flag"), false);
    defaults.setObject("Other", true);
    EXPECT_TRUE(read(file_).starts_with("bplist00"));
    EXPECT_EQ(PropertyListDefaults(file_).boolean("Flag"), false);
}

TEST_F(PropertyListDefaultsTest, ADamagedFileIsSetAsideAndTheSettingsStartEmpty) {
    const auto sample = sampleFile();
    const std::vector<std::string> contents{"",
                                            "garbage",
                                            "bplist00",
                                            std::string(1000, '\xA5'),
                                            "[1, 2]",
                                            "<plist>",
                                            std::string(sample.size(), '\0'),
                                            sample + "\n"};
    for (const auto& content : contents) {
        write(content);
        PropertyListDefaults defaults(file_);
        EXPECT_EQ(defaults.object("Flag"), std::nullopt);
        EXPECT_EQ(defaults.lastError(), std::nullopt);
        EXPECT_FALSE(fs::exists(file_));
        ASSERT_EQ(damagedFiles().size(), 1U);
        EXPECT_EQ(read(damagedFiles().front()), content);
        defaults.setObject("Flag", false);
        EXPECT_EQ(PropertyListDefaults(file_).boolean("Flag"), false);
        removeDamagedFiles();
    }
}

TEST_F(PropertyListDefaultsTest, AFileThatIsNotADictionaryIsSetAside) {
    for (const PropertyListValue& value :
         std::vector<PropertyListValue>{true, "text", PropertyListValue::Array{"Flag"}}) {
        const auto bytes = core::serializePropertyList(value, 1000).value();
        write({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        EXPECT_EQ(PropertyListDefaults(file_).object("Flag"), std::nullopt);
        EXPECT_EQ(damagedFiles().size(), 1U);
        removeDamagedFiles();
    }
}

TEST_F(PropertyListDefaultsTest, AFileOverTheLimitIsSetAside) {
    static_cast<void>(sampleFile());
    fs::resize_file(file_, PropertyListDefaults::maximumBytes + 1);
    EXPECT_EQ(PropertyListDefaults(file_).object("Flag"), std::nullopt);
    ASSERT_EQ(damagedFiles().size(), 1U);
    EXPECT_EQ(fs::file_size(damagedFiles().front()), PropertyListDefaults::maximumBytes + 1);
}

TEST_F(PropertyListDefaultsTest, TheNameOfADamagedFileHoldsTheTime) {
    write("garbage");
    const PropertyListDefaults defaults(file_);
    const std::regex pattern(R"(defaults\.plist\.damaged-20\d{6}T\d{6}Z)");
    EXPECT_TRUE(std::regex_match(damagedFiles().at(0).filename().string(), pattern)) << damagedFiles().at(0);
}

TEST_F(PropertyListDefaultsTest, AnEarlierDamagedFileIsNeverOverwritten) {
    for (const auto* content : {"first", "second", "third"}) {
        write(content);
        const PropertyListDefaults defaults(file_);
    }
    std::vector<std::string> contents;
    for (const auto& file : damagedFiles()) {
        contents.push_back(read(file));
    }
    std::ranges::sort(contents);
    EXPECT_EQ(contents, (std::vector<std::string>{"first", "second", "third"}));
}

TEST_F(PropertyListDefaultsTest, CutAnywhereTheFileIsSetAside) {
    const auto sample = sampleFile();
    for (std::size_t size = 0; size < sample.size(); ++size) {
        write(sample.substr(0, size));
        const PropertyListDefaults defaults(file_);
        EXPECT_EQ(defaults.object("Flag"), std::nullopt) << size;
        EXPECT_EQ(damagedFiles().size(), 1U) << size;
        removeDamagedFiles();
    }
}

TEST_F(PropertyListDefaultsTest, WithAnyByteChangedTheFileIsReadOrSetAside) {
    const auto sample = sampleFile();
    for (std::size_t position = 0; position < sample.size(); ++position) {
        for (const unsigned mask : {0xFFU, 0x80U, 0x01U}) {
            auto damaged = sample;
            damaged[position] = static_cast<char>(static_cast<unsigned char>(damaged[position]) ^ mask);
            write(damaged);
            PropertyListDefaults defaults(file_);
            EXPECT_EQ(fs::exists(file_), damagedFiles().empty()) << position;
            static_cast<void>(defaults.boolean("Flag"));
            static_cast<void>(defaults.stringArray("List"));
            if (mask == 0xFF) {
                defaults.setObject("After", "change");
                EXPECT_EQ(PropertyListDefaults(file_).string("After"), "change") << position;
            }
            removeDamagedFiles();
        }
    }
}

TEST_F(PropertyListDefaultsTest, AbandonedTemporariesAreRemovedAtTheStart) {
    std::ofstream(folder_ / ".defaults.plist.Ab12Cd.tmp") << "half";
    const PropertyListDefaults defaults(file_);
    EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(PropertyListDefaultsTest, AnUnreadableFileStaysUntouchedAndChangesAreLaidOverItLater) {
    static_cast<void>(sampleFile());
    fs::permissions(files_.path(), fs::perms::all);
    fs::permissions(folder_, fs::perms::all);
    fs::permissions(file_, fs::perms::none);
    const auto before = identity(file_);
    const OrdinaryUser user;
    PropertyListDefaults defaults(file_);
    EXPECT_EQ(defaults.lastError(), core::FileError{EACCES});
    defaults.setObject("Flag", false);
    defaults.removeObject("List");
    EXPECT_EQ(defaults.boolean("Flag"), false);
    EXPECT_EQ(identity(file_), before);
    EXPECT_EQ(defaults.lastError(), core::FileError{EACCES});

    ASSERT_EQ(::seteuid(::getuid()), 0);
    fs::permissions(file_, fs::perms::owner_read | fs::perms::owner_write);
    defaults.setObject("Other", true);
    EXPECT_EQ(defaults.lastError(), std::nullopt);
    EXPECT_EQ(defaults.string("שם"), "ערך") << "it was in the file";
    const PropertyListDefaults later(file_);
    EXPECT_EQ(later.boolean("Flag"), false);
    EXPECT_EQ(later.object("List"), std::nullopt);
    EXPECT_EQ(later.string("שם"), "ערך");
    EXPECT_EQ(later.boolean("Other"), true);
}

TEST_F(PropertyListDefaultsTest, InAReadOnlyFolderChangesStayInMemoryUntilItCanBeWritten) {
    static_cast<void>(sampleFile());
    fs::permissions(files_.path(), fs::perms::all);
    fs::permissions(folder_, fs::perms(0555));
    fs::permissions(file_, fs::perms(0644));
    const OrdinaryUser user;
    PropertyListDefaults defaults(file_);
    EXPECT_EQ(defaults.boolean("Flag"), true);
    defaults.setObject("Flag", false);
    EXPECT_EQ(defaults.boolean("Flag"), false);
    EXPECT_EQ(defaults.lastError(), core::FileError{EACCES});
    EXPECT_EQ(PropertyListDefaults(file_).boolean("Flag"), true) << "the file is as it was";

    ASSERT_EQ(::seteuid(::getuid()), 0);
    fs::permissions(folder_, fs::perms::all);
    defaults.setObject("Flag", false);
    EXPECT_EQ(defaults.lastError(), std::nullopt);
    EXPECT_EQ(PropertyListDefaults(file_).boolean("Flag"), false);
}

TEST_F(PropertyListDefaultsTest, ADamagedFileInAReadOnlyFolderIsNotLost) {
    write("garbage");
    fs::permissions(files_.path(), fs::perms::all);
    fs::permissions(folder_, fs::perms(0555));
    fs::permissions(file_, fs::perms(0644));
    const OrdinaryUser user;
    PropertyListDefaults defaults(file_);
    EXPECT_EQ(defaults.lastError(), core::FileError{EACCES});
    defaults.setObject("Flag", false);
    EXPECT_EQ(defaults.boolean("Flag"), false);
    EXPECT_EQ(read(file_), "garbage");

    ASSERT_EQ(::seteuid(::getuid()), 0);
    fs::permissions(folder_, fs::perms::all);
    defaults.setObject("Other", true);
    EXPECT_EQ(read(damagedFiles().at(0)), "garbage");
    EXPECT_EQ(PropertyListDefaults(file_).boolean("Flag"), false);
}

TEST_F(PropertyListDefaultsTest, AFolderOrFileInTheWayKeepsChangesInMemory) {
    fs::create_directory(file_);
    PropertyListDefaults folderInTheWay(file_);
    folderInTheWay.setObject("Key", true);
    EXPECT_EQ(folderInTheWay.boolean("Key"), true);
    EXPECT_EQ(folderInTheWay.lastError(), core::FileError{EINVAL});

    fs::remove_all(folder_);
    std::ofstream(folder_) << "a file where the folder should be";
    PropertyListDefaults fileInTheWay(file_);
    fileInTheWay.setObject("Key", true);
    EXPECT_EQ(fileInTheWay.lastError(), core::FileError{ENOTDIR});
    fs::remove(folder_);
    fileInTheWay.setObject("Other", true);
    EXPECT_EQ(PropertyListDefaults(file_).boolean("Key"), true);
}

TEST_F(PropertyListDefaultsTest, AValueThatCouldNotBeReadBackIsNotWritten) {
    PropertyListDefaults defaults(file_);
    defaults.setObject("Small", true);
    PropertyListValue deep = true;
    for (int level = 0; level < 100; ++level) {
        deep = PropertyListValue::Array{std::move(deep)};
    }
    defaults.setObject("Deep", deep);
    EXPECT_EQ(defaults.lastError(), core::FileError{EFBIG});
    defaults.setObject("Deep", std::vector<std::byte>(PropertyListDefaults::maximumBytes));
    EXPECT_EQ(defaults.lastError(), core::FileError{EFBIG});
    EXPECT_EQ(PropertyListDefaults(file_).boolean("Small"), true);
    defaults.removeObject("Deep");
    EXPECT_EQ(defaults.lastError(), std::nullopt);
}

class StandardDefaultsFileTest : public ::testing::Test {
protected:
    class Variable {
    public:
        Variable(const char* name, const char* value) : name_(name) {
            if (const char* old = std::getenv(name)) {
                old_ = old;
            }
            set(value);
        }

        Variable(const Variable&) = delete;
        Variable& operator=(const Variable&) = delete;

        ~Variable() { set(old_ ? old_->c_str() : nullptr); }

    private:
        void set(const char* value) const { value != nullptr ? ::setenv(name_, value, 1) : ::unsetenv(name_); }

        const char* name_;
        std::optional<std::string> old_;
    };
};

TEST_F(StandardDefaultsFileTest, IsInTheConfigurationFolder) {
    const Variable config("XDG_CONFIG_HOME", "/settings");
    EXPECT_EQ(standardDefaultsFile(), "/settings/quillane/defaults.plist");
}

TEST_F(StandardDefaultsFileTest, IsBelowTheHomeFolderWithoutOne) {
    const Variable home("HOME", "/home/someone");
    for (const char* value : std::initializer_list<const char*>{nullptr, "", "relative/path"}) {
        const Variable config("XDG_CONFIG_HOME", value);
        EXPECT_EQ(standardDefaultsFile(), "/home/someone/.config/quillane/defaults.plist");
    }
}

TEST_F(StandardDefaultsFileTest, FindsTheHomeFolderWithoutAnEnvironment) {
    const Variable config("XDG_CONFIG_HOME", nullptr);
    const Variable home("HOME", nullptr);
    EXPECT_TRUE(standardDefaultsFile().is_absolute());
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(PropertyListFile, UserDefaultsContract, PropertyListDefaultsDriver);
} // namespace testing
} // namespace quillane
