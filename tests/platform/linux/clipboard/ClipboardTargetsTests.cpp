// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/ClipboardTargets.hpp"

#include <gmock/gmock.h>

#include <span>

namespace quillane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace clipboardTargets;

std::vector<std::byte> bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

std::optional<std::string> uniform(std::string_view target, std::string_view bytes) {
    const auto result = toUniform(target, bytesOf(bytes));
    return result ? std::optional(std::string(reinterpret_cast<const char*>(result->data()), result->size()))
                  : std::nullopt;
}

TEST(ClipboardTargets, NamesUniformTypesAndMarkers) {
    const std::vector<std::string_view> offered{"TARGETS", "STRING", "image/png", "org.nspasteboard.TransientType",
                                                "com.example.private"};
    EXPECT_EQ(typesOf(offered),
              (core::PasteboardTypeSet{"public.utf8-plain-text", "public.png", "org.nspasteboard.TransientType"}));
    EXPECT_EQ(typesOf(std::vector<std::string_view>{"x-kde-passwordManagerHint"}),
              core::PasteboardTypeSet{"org.nspasteboard.ConcealedType"});
    EXPECT_THAT(typesOf({}), IsEmpty());
}

TEST(ClipboardTargets, PrefersTheTargetThatKeepsMost) {
    const std::vector<std::string_view> offered{"STRING", "text/plain", "UTF8_STRING"};
    EXPECT_EQ(targetFor("public.utf8-plain-text", offered), "UTF8_STRING");
    EXPECT_EQ(targetFor("public.utf8-plain-text", std::span(offered).first(1)), "STRING");
    EXPECT_EQ(targetFor("public.png", offered), std::nullopt);
}

TEST(ClipboardTargets, ConvertsTexts) {
    EXPECT_EQ(uniform("UTF8_STRING", "שלום"), "שלום");
    EXPECT_EQ(uniform("UTF8_STRING", "\xff"), std::nullopt);
    EXPECT_EQ(uniform("STRING", "\xe9\x80"), "é\xC2\x80");
    EXPECT_EQ(uniform("_NETSCAPE_URL", "https://x.org\nTitle"), "https://x.org");
    EXPECT_EQ(uniform("text/x-moz-url", std::string_view("\xff\xfeh\0\xd0\x05\n\0", 8)), "hא");
    EXPECT_EQ(uniform("text/x-moz-url", std::string_view("\xfe\xff\0h", 4)), "h");
    EXPECT_EQ(uniform("text/x-moz-url", std::string_view("\x3d\xd8\x00\xde\x3d\xd8", 6)), "😀�");
    EXPECT_EQ(uniform("text/x-moz-url", ""), std::nullopt);
    EXPECT_EQ(uniform("text/x-moz-url", "x"), std::nullopt);
    EXPECT_EQ(uniform("com.example.private", "x"), std::nullopt);
    EXPECT_EQ(uniform("image/png", std::string_view("\0\xff", 2)), std::string("\0\xff", 2));
}

TEST(ClipboardTargets, ReadsListsOfUris) {
    EXPECT_EQ(parseUriList(bytesOf("#c\r\nfile:///a\r\n\r\nFILE:///b\nhttps://x.org\nftp://y")),
              (UriList{{"file:///a", "FILE:///b"}, "https://x.org"}));
    EXPECT_EQ(parseUriList(bytesOf("copy\nfile:///a\nfile:///b")), (UriList{{"file:///a", "file:///b"}, std::nullopt}));
    EXPECT_EQ(parseUriList(bytesOf("file:///a\ncopy")), (UriList{{"file:///a"}, "copy"}));
    EXPECT_EQ(parseUriList(bytesOf(std::string("file:///a\0", 10))), (UriList{{"file:///a"}, std::nullopt}));
    EXPECT_EQ(parseUriList({}), UriList{});
    EXPECT_EQ(parseUriList(bytesOf(std::string(100'000, '\n'))), UriList{});
}

TEST(ClipboardTargets, OffersExactlyTheTypesOfTheItems) {
    const std::vector<core::PasteboardItem> items{
        {{{"public.jpeg", bytesOf("J")}}, {{"org.nspasteboard.source", "s"}}}};
    EXPECT_THAT(targetsFor(items), ElementsAre("image/jpeg", "org.nspasteboard.source"));
    EXPECT_EQ(**dataFor("image/jpeg", items), bytesOf("J"));
    EXPECT_EQ(dataFor("image/png", items), std::nullopt);
    EXPECT_EQ(dataFor("image/jpg", items), std::nullopt);
    EXPECT_THAT(targetsFor({}), IsEmpty());
}

} // namespace
} // namespace quillane
