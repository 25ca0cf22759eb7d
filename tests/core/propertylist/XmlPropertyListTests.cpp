// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/propertylist/PropertyList.hpp"

#include "PropertyListSamples.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillane::core {
namespace {

using testing::bytesOf;

constexpr std::size_t limit = std::size_t{16} << 20;

tl::expected<PropertyListValue, PropertyListError> parse(std::string_view document) {
    return parsePropertyList(bytesOf(document), limit);
}

std::string repeated(std::string_view text, std::size_t times) {
    std::string result;
    for (std::size_t i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

constexpr std::string_view head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n";

std::string document(std::string_view elements) {
    return std::string(head) + std::string(elements) + "\n</plist>\n";
}

TEST(XmlPropertyList, ReadsEveryType) {
    const auto value = parse(document("<dict><key>שם</key><string>ערך &amp; &#1513;</string><key>on</key><true/>"
                                      "<key>off</key><false/><key>whole</key><integer>-12</integer>"
                                      "<key>real</key><real>0.5</real><key>data</key><data>aGk=</data>"
                                      "<key>date</key><date>2001-01-02T00:00:00Z</date>"
                                      "<key>list</key><array><string/><dict/></array></dict>"));
    const PropertyListValue expected =
        PropertyListValue::Dictionary{{"שם", "ערך & ש"},
                                      {"on", true},
                                      {"off", false},
                                      {"whole", std::int64_t{-12}},
                                      {"real", 0.5},
                                      {"data", bytesOf("hi")},
                                      {"date", PropertyListValue::Date{86400}},
                                      {"list", PropertyListValue::Array{"", PropertyListValue::Dictionary{}}}};
    ASSERT_TRUE(value.has_value());
    EXPECT_EQ(*value, expected);
}

TEST(XmlPropertyList, NeedsNeitherDeclarationNorDocumentType) {
    EXPECT_EQ(parse("<plist><true/></plist>"), PropertyListValue(true));
    EXPECT_EQ(parse("\uFEFF<plist version=\"1.0\"><true/></plist>"), PropertyListValue(true));
}

TEST(XmlPropertyList, PassesOverComments) {
    EXPECT_EQ(parse(document("<!-- <array> --><array><!-- </array> --><string>a<!-- > -->b</string></array>")),
              PropertyListValue(PropertyListValue::Array{"ab"}));
}

TEST(XmlPropertyList, RefusesUnclosedAndForeignDocuments) {
    for (const auto* elements :
         {"", "<array>", "<array></dict>", "<dict><true/></dict>", "<unknown/>", "text", "<", "<>", "<array", "<!-- ",
          "<![CDATA[x]]>", "<string>a", "<a b=\"<\">", "<true b=\"></true>"}) {
        EXPECT_FALSE(parse(document(elements)).has_value()) << elements;
    }
    EXPECT_FALSE(parse("<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><true/></plist>").has_value());
    EXPECT_FALSE(parse("<html><body/></html>").has_value());
    EXPECT_FALSE(parse(std::string_view("<plist><true/>\0</plist>", 23)).has_value());
}

TEST(XmlPropertyList, CutAnywhereItIsReadOrRefused) {
    const auto whole = document("<dict><key>a</key><array><integer>1</integer><data>aGk=</data></array></dict>");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto value = parse(std::string_view(whole).substr(0, size));
        EXPECT_TRUE(!value || *value == *parse(whole)) << size; // only the end of the document may be missing
    }
}

TEST(XmlPropertyList, SixtyFourLevelsAreReadAndNoMore) {
    const auto nested = [](std::size_t levels) {
        return document(repeated("<array>", levels - 1) + "<true/>" + repeated("</array>", levels - 1));
    };
    EXPECT_TRUE(parse(nested(64)).has_value());
    EXPECT_EQ(parse(nested(67)).error(), PropertyListError::tooDeep);
    EXPECT_EQ(parse(nested(50'000)).error(), PropertyListError::tooDeep);
}

TEST(XmlPropertyList, LevelsCannotBeHiddenBehindComments) {
    EXPECT_EQ(parse(document(repeated("<array><!-- </array> -->", 1000))).error(), PropertyListError::tooDeep);
}

TEST(XmlPropertyList, RefusesDocumentsThatWouldTakeTooLong) {
    EXPECT_EQ(parse(document("<string>" + repeated("&lt;", 200'000) + "</string>")).error(),
              PropertyListError::tooLarge);
    EXPECT_EQ(parse(document("<array>" + repeated("<true/>", 101'000) + "</array>")).error(),
              PropertyListError::tooLarge);
    EXPECT_EQ(parse(document(std::string(std::size_t{1} << 20, ' '))).error(), PropertyListError::tooLarge);
}

TEST(XmlPropertyList, RefusesADateThatItCannotHold) {
    EXPECT_FALSE(parse(document("<date>9999-01-01T00:00:00Z</date>")).has_value());
}

} // namespace
} // namespace quillane::core
