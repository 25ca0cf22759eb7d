// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/propertylist/PropertyList.hpp"

#include "PropertyListSamples.hpp"

#include <plist/plist.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>

namespace quillane::core {
namespace {

using namespace testing;
using namespace std::string_literals;

constexpr std::size_t limit = std::size_t{1} << 20;

PropertyListValue parsed(const std::vector<std::byte>& bytes) {
    const auto value = parsePropertyList(bytes, limit);
    EXPECT_TRUE(value.has_value());
    return value.value_or(PropertyListValue());
}

PropertyListError errorOf(const std::vector<std::byte>& bytes, std::size_t maximumBytes = limit) {
    const auto value = parsePropertyList(bytes, maximumBytes);
    EXPECT_FALSE(value.has_value());
    return value ? PropertyListError{-1} : value.error();
}

std::vector<std::byte> written(const PropertyListValue& value) {
    return serializePropertyList(value, limit).value();
}

PropertyListValue nested(std::size_t levels) {
    PropertyListValue value = true;
    for (std::size_t level = 1; level < levels; ++level) {
        value = PropertyListValue::Array{std::move(value)};
    }
    return value;
}

TEST(PropertyList, EveryTypeComesBackAsItWas) {
    EXPECT_EQ(parsed(written(everyType())), everyType());
}

TEST(PropertyList, AnySingleValueCanBeTheRoot) {
    const auto all = everyType();
    for (const auto& [key, value] : *all.as<PropertyListValue::Dictionary>()) {
        EXPECT_EQ(parsed(written(value)), value) << key;
    }
}

TEST(PropertyList, BooleansAndNumbersAreDistinct) {
    const auto value = parsed(written(PropertyListValue::Array{true, std::int64_t{1}, 1.0}));
    const auto& elements = *value.as<PropertyListValue::Array>();
    EXPECT_NE(elements[0].as<bool>(), nullptr);
    EXPECT_NE(elements[1].as<std::int64_t>(), nullptr);
    EXPECT_NE(elements[2].as<double>(), nullptr);
}

TEST(PropertyList, RealNumbersKeepEveryBit) {
    for (const double number : {0.1, -0.0, 1e-320, 1.7976931348623157e308, std::numeric_limits<double>::infinity()}) {
        const auto value = parsed(written(number));
        EXPECT_EQ(*value.as<double>(), number);
        EXPECT_EQ(std::signbit(*value.as<double>()), std::signbit(number));
    }
    EXPECT_TRUE(std::isnan(*parsed(written(std::nan(""))).as<double>()));
}

TEST(PropertyList, DatesKeepEveryBit) {
    for (const double seconds : {0.0, -62135769600.0, 807000000.123456789, 1e15}) {
        EXPECT_EQ(parsed(written(PropertyListValue::Date{seconds})), PropertyListValue::Date{seconds});
    }
}

TEST(PropertyList, TextMayHoldZeroBytes) {
    EXPECT_EQ(parsed(written("a\0b"s)), "a\0b"s);
    EXPECT_EQ(parsed(written("א\0ב"s)), "א\0ב"s);
}

TEST(PropertyList, IllFormedTextIsRepaired) {
    EXPECT_EQ(parsed(written("a\xFF"s)), "a\uFFFD");
    EXPECT_EQ(parsed(BinaryFile().object("\x52\x61\xFF").bytes()), "a\uFFFD");
    EXPECT_EQ(parsed(BinaryFile().object("\x62\xD8\x3D\x00\x61"s).bytes()), "\uFFFDa");
}

TEST(PropertyList, LongArraysAndTextsComeBack) {
    for (const std::size_t size : {14U, 15U, 16U, 255U, 256U, 20'000U}) {
        EXPECT_EQ(parsed(written(std::string(size, 'a'))), std::string(size, 'a'));
        const PropertyListValue::Array elements(size, PropertyListValue("a"));
        EXPECT_EQ(parsed(written(elements)), elements);
    }
}

TEST(PropertyList, ReadsIntegersOfEveryWidth) {
    EXPECT_EQ(parsed(BinaryFile().object("\x10\xFF").bytes()), std::int64_t{255});
    EXPECT_EQ(parsed(BinaryFile().object("\x11\xFF\xFF").bytes()), std::int64_t{65535});
    EXPECT_EQ(parsed(BinaryFile().object("\x12\xFF\xFF\xFF\xFF").bytes()), std::int64_t{0xFFFFFFFF});
    EXPECT_EQ(parsed(BinaryFile().object("\x13" + std::string(8, '\xFF')).bytes()), std::int64_t{-1});
    EXPECT_EQ(parsed(BinaryFile().object("\x14" + std::string(16, '\xFF')).bytes()), std::int64_t{-1});
    EXPECT_EQ(parsed(BinaryFile().object("\x14" + std::string(8, '\0') + std::string(8, '\x7F')).bytes()),
              std::int64_t{0x7F7F7F7F7F7F7F7F});
}

TEST(PropertyList, AnIntegerAboveTheRangeIsReadAsAReal) {
    EXPECT_EQ(parsed(BinaryFile().object("\x14" + std::string(8, '\0') + "\x80" + std::string(7, '\0')).bytes()),
              0x1p63);
}

TEST(PropertyList, ReadsRealsOfFourBytes) {
    EXPECT_EQ(parsed(BinaryFile().object("\x22\x3F\x00\x00\x00"s).bytes()), 0.5);
}

TEST(PropertyList, AValueThatIsSharedIsReadInEachPlace) {
    const auto bytes = BinaryFile()
                           .object("\xA2\x00\x01\x00\x01"s)
                           .object("\x51"
                                   "a")
                           .bytes();
    EXPECT_EQ(parsed(bytes), (PropertyListValue::Array{"a", "a"}));
}

TEST(PropertyList, RefusesUnknownTypes) {
    for (const auto& object : {"\x00"s, "\x0F"s, "\x80\x01"s, "\xC1\x00\x00"s, "\x70"s, "\x15"s + std::string(32, '\0'),
                               "\x21\x00\x00"s, "\x32\x00\x00\x00\x00"s}) {
        EXPECT_EQ(errorOf(BinaryFile().object(object).bytes()), PropertyListError::malformed);
    }
}

TEST(PropertyList, RefusesAKeyThatIsNotText) {
    const auto bytes = BinaryFile().object("\xD1\x00\x01\x00\x01"s).object("\x09").bytes();
    EXPECT_EQ(errorOf(bytes), PropertyListError::malformed);
}

TEST(PropertyList, RefusesReferencesAndSizesOutOfTheFile) {
    for (const auto& object :
         {"\xA1\x00\x07"s, "\xA1\x00"s, "\x5A"s, "\x4A"s, "\x6F\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s,
          "\x4F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, "\xAF\x13\x40\x00\x00\x00\x00\x00\x00\x00"s,
          "\xDF\x13\x80\x00\x00\x00\x00\x00\x00\x00"s, "\x5F"s, "\x5F\x51"s, "\x5F\x14"s}) {
        EXPECT_EQ(errorOf(BinaryFile().object(object).bytes()), PropertyListError::malformed);
    }
    EXPECT_EQ(errorOf(BinaryFile().object("\x09").bytes(1)), PropertyListError::malformed);
    EXPECT_EQ(errorOf(BinaryFile().object("\x09").bytes(~std::uint64_t{0})), PropertyListError::malformed);
}

TEST(PropertyList, SixtyFourLevelsAreReadAndWrittenAndNoMore) {
    EXPECT_EQ(parsed(written(nested(64))), nested(64));
    EXPECT_EQ(serializePropertyList(nested(65), limit).error(), PropertyListError::tooDeep);
    EXPECT_EQ(serializePropertyList(PropertyListValue::Dictionary{{"a", nested(64)}}, limit).error(),
              PropertyListError::tooDeep);
    BinaryFile file;
    for (unsigned level = 0; level < 64; ++level) {
        file.object("\xA1" + BinaryFile::number(level + 1, 2));
    }
    EXPECT_EQ(errorOf(file.object("\x09").bytes()), PropertyListError::tooDeep);
    EXPECT_EQ(parsed(file.bytes(1)), nested(64));
}

TEST(PropertyList, AnArrayThatHoldsItselfIsTooDeep) {
    EXPECT_EQ(errorOf(BinaryFile().object("\xA1\x00\x00"s).bytes()), PropertyListError::tooDeep);
}

TEST(PropertyList, ASmallFileThatUnfoldsWithoutEndIsTooLarge) {
    BinaryFile file; // each array holds the next one twice: two to the power of forty values
    for (unsigned level = 0; level < 40; ++level) {
        file.object("\xA2" + BinaryFile::number(level + 1, 2) + BinaryFile::number(level + 1, 2));
    }
    EXPECT_EQ(errorOf(file.object("\x09").bytes()), PropertyListError::tooLarge);
}

TEST(PropertyList, ASharedTextThatUnfoldsBeyondTheLimitIsTooLarge) {
    BinaryFile file;
    std::string references;
    for (int i = 0; i < 1000; ++i) {
        references += BinaryFile::number(1, 2);
    }
    file.object("\xAF\x11\x03\xE8" + references).object("\x5F\x11\x10\x00"s + std::string(4096, 'a'));
    EXPECT_EQ(errorOf(file.bytes()), PropertyListError::tooLarge);
}

TEST(PropertyList, KeepsToTheLimitOfBytes) {
    const auto bytes = written(everyType());
    EXPECT_TRUE(parsePropertyList(bytes, bytes.size()).has_value());
    EXPECT_EQ(errorOf(bytes, bytes.size() - 1), PropertyListError::tooLarge);
    EXPECT_TRUE(serializePropertyList(everyType(), bytes.size()).has_value());
    EXPECT_EQ(serializePropertyList(everyType(), bytes.size() - 1).error(), PropertyListError::tooLarge);
}

TEST(PropertyList, KeepsToTheLimitOfValues) {
    const auto large = std::size_t{1} << 30;
    EXPECT_TRUE(serializePropertyList(PropertyListValue::Array(99'999, true), large).has_value());
    EXPECT_EQ(serializePropertyList(PropertyListValue::Array(100'000, true), large).error(),
              PropertyListError::tooLarge);
}

TEST(PropertyList, CutAnywhereItIsRefused) {
    const auto bytes = written(everyType());
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        const std::vector<std::byte> cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(errorOf(cut), PropertyListError::malformed) << size;
    }
}

TEST(PropertyList, WithAnyBitFlippedItIsReadOrRefusedAndWhatIsReadCanBeWritten) {
    const auto bytes = written(everyType());
    for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        auto damaged = bytes;
        damaged[bit / 8] ^= std::byte{1} << bit % 8;
        if (const auto value = parsePropertyList(damaged, limit)) {
            EXPECT_TRUE(serializePropertyList(*value, limit).has_value()) << bit;
        }
    }
}

TEST(PropertyList, GarbageIsMalformed) {
    std::mt19937 random(7);
    for (std::size_t size = 0; size < 200; ++size) {
        std::string garbage(size, '\0');
        for (auto& character : garbage) {
            character = static_cast<char>(random());
        }
        EXPECT_EQ(errorOf(bytesOf(garbage)), PropertyListError::malformed);
        if (parsePropertyList(bytesOf("bplist00" + garbage), limit)) {
            ADD_FAILURE() << "accepted " << size;
        }
    }
    EXPECT_EQ(errorOf(bytesOf("{\"json\": true}")), PropertyListError::malformed);
}

/// The same bytes as XML, by libplist, an independent reader and writer of the format.
std::string xmlOf(plist_t node) {
    char* xml = nullptr;
    std::uint32_t size = 0;
    plist_to_xml(node, &xml, &size);
    std::string text(xml, size);
    plist_to_xml_free(xml);
    return text;
}

TEST(PropertyList, AnotherReaderUnderstandsTheOutput) {
    const PropertyListValue value = PropertyListValue::Dictionary{
        {"date", PropertyListValue::Date{86400}},
        {"flag", true},
        {"list", PropertyListValue::Array{std::int64_t{-5}, std::int64_t{70000}, 0.5, bytesOf("data")}},
        {"שם", "ערך \U0001F600"},
    };
    const auto bytes = written(value);
    plist_t node = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(bytes.data()), static_cast<std::uint32_t>(bytes.size()), &node);
    ASSERT_NE(node, nullptr);
    const auto xml = xmlOf(node);
    plist_free(node);
    EXPECT_EQ(parsed(bytesOf(xml)), value) << xml;
}

TEST(PropertyList, ReadsWhatAnotherWriterWrites) {
    plist_t node = plist_new_dict();
    plist_t list = plist_new_array();
    for (int i = 0; i < 300; ++i) {
        plist_array_append_item(list, plist_new_string("שלום"));
        plist_array_append_item(list, plist_new_uint(static_cast<std::uint64_t>(i)));
    }
    plist_dict_set_item(node, "list", list);
    plist_dict_set_item(node, "real", plist_new_real(0.1));
    char* bytes = nullptr;
    std::uint32_t size = 0;
    plist_to_bin(node, &bytes, &size);
    plist_free(node);
    const auto value = parsed(bytesOf({bytes, size}));
    plist_to_bin_free(bytes);
    PropertyListValue::Array expected;
    for (std::int64_t i = 0; i < 300; ++i) {
        expected.insert(expected.end(), {"שלום", i});
    }
    EXPECT_EQ(value, (PropertyListValue::Dictionary{{"list", expected}, {"real", 0.1}}));
}

} // namespace
} // namespace quillane::core
