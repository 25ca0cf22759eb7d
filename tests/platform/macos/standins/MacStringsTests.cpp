// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/foundation/MacStrings.hpp"

#include "standins/macos/Mac.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillane {
namespace {

class MacStringsTest : public ::testing::Test {
protected:
    standin::Mac mac;
};

TEST_F(MacStringsTest, TextsComeBackAsTheyWere) {
    for (const std::string text : {"", "a", "שלום", "مرحبا", "\U0001F600", "a\xCC\x81"}) {
        EXPECT_EQ(utf8(cfString(text).get()), text);
    }
    const std::string zero("a\0b", 3);
    EXPECT_EQ(utf8(cfString(zero).get()), zero);
}

TEST_F(MacStringsTest, DamagedTextIsReadAsLatin1) {
    EXPECT_EQ(utf8(cfString("\xE9t\xE9").get()), "été");
    EXPECT_EQ(utf8(cfString("\xC0\x80").get()), "À\xC2\x80") << "an overlong zero is no UTF-8";
    EXPECT_EQ(utf8(cfString("\xED\xA0\x80").get()), "í\xC2\xA0\xC2\x80") << "nor is half of a pair";
    EXPECT_EQ(utf8(cfString("\xF0\x9F").get()), "ð\xC2\x9F");
}

TEST_F(MacStringsTest, HalfOfAPairBecomesAQuestionMark) {
    for (const std::u16string half : {u"\xD83D", u"\xDE00",
                                      u"a\xD83D"
                                      u"b"}) {
        const auto string =
            CFRef<CFStringRef>::adopt(standin::reference<CFStringRef>(standin::make<standin::String>(half)));
        EXPECT_EQ(utf8(string.get()), half.size() == 1 ? "?" : "a?b");
    }
}

TEST_F(MacStringsTest, NullIsAnEmptyText) {
    EXPECT_EQ(utf8(nullptr), "");
}

} // namespace
} // namespace quillane
