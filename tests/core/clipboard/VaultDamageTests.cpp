// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultTest.hpp"

#include "core/clipboard/EntryArchive.hpp"
#include "core/propertylist/PropertyList.hpp"

#include <chrono>
#include <limits>

#include <sys/stat.h>

namespace quillane::core {
namespace {

using testing::bytesOf;
using testing::textEntry;
using Reason = VaultError::Reason;
using Value = PropertyListValue;

class VaultDamageTest : public testing::VaultTest {
protected:
    VaultDamageTest() { saved(entries_); }

    Reason reasonOfLoading() const {
        const auto loaded = vault().load();
        EXPECT_FALSE(loaded);
        EXPECT_TRUE(loaded || loaded.error().isDamage());
        return loaded ? Reason::folder : loaded.error().reason;
    }

    static std::vector<std::byte> plist(const Value& value) { return *serializePropertyList(value, 1U << 30U); }

    /// The fields of an entry as the vault writes them.
    static Value::Dictionary fieldsOf(const ClipboardEntry& entry) {
        return *parsePropertyList(*entryArchive::encode(entry), 1U << 20U)->as<Value::Dictionary>();
    }

    const std::vector<ClipboardEntry> entries_{textEntry("one", 1), textEntry("two", 2)};
};

TEST_F(VaultDamageTest, AnyByteFlippedFailsTheWholeLoad) {
    for (const auto& name : fileNames()) {
        const auto file = folder_ / name;
        const auto intact = contents(file);
        for (std::size_t i = 0; i < intact.size(); ++i) {
            auto damaged = intact;
            damaged[i] = static_cast<char>(static_cast<unsigned char>(damaged[i]) ^ (1U << i % 8));
            write(file, damaged);
            ASSERT_EQ(reasonOfLoading(), Reason::notAuthentic) << name << " " << i;
        }
        write(file, intact);
    }
    EXPECT_EQ(vault().load(), entries_);
}

TEST_F(VaultDamageTest, AnyLengthCutFailsTheWholeLoad) {
    for (const auto& name : fileNames()) {
        const auto file = folder_ / name;
        const auto intact = contents(file);
        for (std::size_t size = 0; size < intact.size(); ++size) {
            write(file, std::string_view(intact).substr(0, size));
            ASSERT_EQ(reasonOfLoading(), Reason::notAuthentic) << name << " " << size;
        }
        write(file, intact + '\0');
        EXPECT_EQ(reasonOfLoading(), Reason::notAuthentic);
        write(file, intact);
    }
}

TEST_F(VaultDamageTest, AnotherKeyFailsTheLoadOfAnyFile) {
    const auto other = vault(SecretBytes(std::vector(32, std::byte{1}))).load();
    ASSERT_FALSE(other);
    EXPECT_EQ(other.error().reason, Reason::notAuthentic);
    const auto box = *sealedBox::seal(SecretBytes(std::vector(32, std::byte{1})), *entryArchive::encode(entries_[1]));
    write(fileOf(entries_[1]), {reinterpret_cast<const char*>(box.data()), box.size()});
    EXPECT_EQ(reasonOfLoading(), Reason::notAuthentic);
}

TEST_F(VaultDamageTest, AMissingEntryFailsTheLoad) {
    std::filesystem::remove(fileOf(entries_[1]));
    EXPECT_EQ(reasonOfLoading(), Reason::read);
}

TEST_F(VaultDamageTest, AnotherEntryInAnEntrysPlaceFailsTheLoad) {
    std::filesystem::copy_file(fileOf(entries_[0]), fileOf(entries_[1]),
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(reasonOfLoading(), Reason::malformed);
}

TEST_F(VaultDamageTest, AnythingButARegularFileFailsTheLoadAtOnce) {
    const auto file = fileOf(entries_[0]);
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_EQ(reasonOfLoading(), Reason::read);
    std::filesystem::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(reasonOfLoading(), Reason::read);
    std::filesystem::remove(file);
    std::filesystem::create_symlink("/dev/zero", file);
    EXPECT_EQ(reasonOfLoading(), Reason::read);
}

TEST_F(VaultDamageTest, AFileLargerThanAnyThatIsWrittenIsNotRead) {
    std::filesystem::resize_file(folder_ / "index", std::uintmax_t{1} << 40U); // sparse
    EXPECT_EQ(reasonOfLoading(), Reason::tooLarge);
}

TEST_F(VaultDamageTest, AnIndexOfOtherThingsIsMalformed) {
    const Value id(entries_[0].id.toString());
    for (const auto& value : {Value(Value::Dictionary{}), Value("text"), Value(Value::Array{std::int64_t{1}}),
                              Value(Value::Array{"no identifier"}),
                              Value(Value::Array{"../" + entries_[0].id.toString()}), Value(Value::Array{id, id})}) {
        writeSealed(folder_ / "index", plist(value));
        EXPECT_EQ(reasonOfLoading(), Reason::malformed);
    }
    writeSealed(folder_ / "index", bytesOf(""));
    EXPECT_EQ(reasonOfLoading(), Reason::malformed);
    writeSealed(folder_ / "index", bytesOf("bplist00"));
    EXPECT_EQ(reasonOfLoading(), Reason::malformed);
}

TEST_F(VaultDamageTest, AnIndexOfAHundredThousandIdentifiersFailsAndDoesNotTakeLong) {
    for (const std::size_t count : {50'000U, 100'000U}) {
        Value::Array ids;
        for (std::size_t i = 0; i < count; ++i) {
            ids.emplace_back(Uuid::random().toString());
        }
        writeSealed(folder_ / "index", *serializePropertyList(std::move(ids), 1U << 30U).or_else([](auto) {
            return tl::expected<std::vector<std::byte>, PropertyListError>(std::vector<std::byte>(8));
        }));
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_FALSE(vault().load());
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    }
}

TEST_F(VaultDamageTest, AnEntryWithoutAnyOneFieldOrWithAnotherTypeIsMalformed) {
    const auto complete = fieldsOf(entries_[0]);
    ASSERT_EQ(complete.size(), 10U);
    for (const auto& [key, value] : complete) {
        auto fields = complete;
        fields.erase(key);
        writeSealed(fileOf(entries_[0]), plist(fields));
        EXPECT_EQ(reasonOfLoading(), Reason::malformed) << key;
        fields[key] = Value(std::int64_t{5});
        writeSealed(fileOf(entries_[0]), plist(fields));
        EXPECT_EQ(reasonOfLoading(), Reason::malformed) << key;
    }
    auto fields = complete;
    fields["unknown"] = Value(true);
    writeSealed(fileOf(entries_[0]), plist(fields));
    EXPECT_EQ(vault().load(), entries_);
}

TEST_F(VaultDamageTest, AnEntryOfWrongValuesIsMalformed) {
    const auto complete = fieldsOf(entries_[0]);
    const std::vector<std::pair<std::string, Value>> wrong{
        {"id", Value("x")},
        {"kind", Value("video")},
        {"createdAt", Value(Value::Date{std::numeric_limits<double>::quiet_NaN()})},
        {"copiedAt", Value(Value::Date{std::numeric_limits<double>::infinity()})},
        {"items", Value(Value::Array{Value("x")})},
        {"items", Value(Value::Array{Value(Value::Array{Value("x")})})},
        {"items", Value(Value::Array{Value(Value::Array{Value(Value::Dictionary{{"type", "x"}})})})},
        {"items", Value(Value::Array{Value(Value::Array{Value(Value::Dictionary{{"data", Value::Data{}}})})})},
    };
    for (const auto& [key, value] : wrong) {
        auto fields = complete;
        fields[key] = value;
        writeSealed(fileOf(entries_[0]), plist(fields));
        EXPECT_EQ(reasonOfLoading(), Reason::malformed) << key;
    }
}

TEST_F(VaultDamageTest, ADateMayBeARealNumber) {
    auto fields = fieldsOf(entries_[0]);
    fields["copiedAt"] = Value(1.0);
    writeSealed(fileOf(entries_[0]), plist(fields));
    EXPECT_EQ(vault().load(), entries_);
}

/// A property list of a few kilobytes whose arrays refer to the next one 200 times each.
std::vector<std::byte> bomb(std::size_t levels, std::string_view leaf) {
    std::string bytes = "bplist00";
    std::vector<std::size_t> offsets;
    for (std::size_t level = 0; level < levels; ++level) {
        offsets.push_back(bytes.size());
        bytes += "\xAF\x10\xC8" + std::string(200, static_cast<char>(level + 1));
    }
    offsets.push_back(bytes.size());
    bytes += leaf;
    const auto table = bytes.size();
    for (const auto offset : offsets) {
        bytes += {static_cast<char>(offset >> 8U), static_cast<char>(offset)};
    }
    bytes += std::string(6, '\0') + "\x02\x01" + std::string(7, '\0') + static_cast<char>(offsets.size());
    bytes += std::string(8, '\0') + std::string(6, '\0');
    bytes += {static_cast<char>(table >> 8U), static_cast<char>(table)};
    return bytesOf(bytes);
}

TEST_F(VaultDamageTest, APropertyListBombIsDefused) {
    const auto begin = std::chrono::steady_clock::now();
    for (const auto& plaintext :
         {bomb(8, "\x08"), bomb(2, "\x4F\x11\x04\x00" + std::string(1'024, 'x')), bomb(100, "\x08")}) {
        writeSealed(folder_ / "index", plaintext);
        EXPECT_EQ(reasonOfLoading(), Reason::malformed);
        writeSealed(folder_ / "index", *entryArchive::encodeIndex(std::vector{entries_[0].id}));
        writeSealed(fileOf(entries_[0]), plaintext);
        EXPECT_EQ(reasonOfLoading(), Reason::malformed);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

} // namespace
} // namespace quillane::core
