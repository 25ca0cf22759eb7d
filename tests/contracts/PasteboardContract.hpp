// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/PasteboardTypes.hpp"
#include "platform/Pasteboard.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace quillane::testing {

/// What every Pasteboard promises. The driver is constructed for each test and has:
///
///     Pasteboard& pasteboard();
///     void copyText(std::string);              // another application copies plain text
///     std::string fileUrl(std::filesystem::path); // by which file managers of this desktop copy a file
///     bool waitUntil(std::function<bool()>);   // lets the world go on; false when it takes too long
///     void settle();                           // lets everything arrive that is on its way
template <typename Driver>
class PasteboardContract : public ::testing::Test {
protected:
    PasteboardContract() {
        driver.pasteboard().setInterest([](const core::PasteboardTypeSet& types, const auto&) {
            return types.contains(core::pasteboardTypes::string) ? std::vector{core::pasteboardTypes::string}
                                                                 : std::vector<std::string_view>();
        });
    }

    static std::vector<std::byte> bytesOf(std::string_view text) {
        const auto bytes = std::as_bytes(std::span(text));
        return {bytes.begin(), bytes.end()};
    }

    static core::PasteboardItem item(std::string_view type, std::string_view data) {
        return {{{std::string(type), bytesOf(data)}}, {}};
    }

    Driver driver;
};

TYPED_TEST_SUITE_P(PasteboardContract);

TYPED_TEST_P(PasteboardContract, AnotherApplicationsTextCanBeReadOnceTheCountHasMoved) {
    auto& pasteboard = this->driver.pasteboard();
    const auto before = pasteboard.changeCount();
    this->driver.copyText("שלום");
    ASSERT_TRUE(this->driver.waitUntil([&] { return !pasteboard.itemTypes().empty(); }));
    EXPECT_GT(pasteboard.changeCount(), before);
    EXPECT_EQ(pasteboard.string(core::pasteboardTypes::string), "שלום");
    EXPECT_EQ(**pasteboard.data(0, core::pasteboardTypes::string), this->bytesOf("שלום"));
    EXPECT_EQ(pasteboard.string(core::pasteboardTypes::html), std::nullopt);
}

TYPED_TEST_P(PasteboardContract, ReadingChangesNothing) {
    auto& pasteboard = this->driver.pasteboard();
    this->driver.copyText("text");
    ASSERT_TRUE(this->driver.waitUntil([&] { return !pasteboard.itemTypes().empty(); }));
    const auto count = pasteboard.changeCount();
    static_cast<void>(pasteboard.string(core::pasteboardTypes::string));
    static_cast<void>(pasteboard.data(0, core::pasteboardTypes::string));
    static_cast<void>(pasteboard.data(0, "com.example.none"));
    EXPECT_EQ(pasteboard.changeCount(), count);
}

TYPED_TEST_P(PasteboardContract, ClearingMovesTheCountAndLeavesNothing) {
    auto& pasteboard = this->driver.pasteboard();
    this->driver.copyText("text");
    ASSERT_TRUE(this->driver.waitUntil([&] { return !pasteboard.itemTypes().empty(); }));
    const auto before = pasteboard.changeCount();
    pasteboard.clear();
    EXPECT_GT(pasteboard.changeCount(), before);
    EXPECT_TRUE(pasteboard.itemTypes().empty());
    EXPECT_EQ(pasteboard.string(core::pasteboardTypes::string), std::nullopt);
}

TYPED_TEST_P(PasteboardContract, WrittenContentsAreReadBackAtOnceAndTheirCountStays) {
    auto& pasteboard = this->driver.pasteboard();
    pasteboard.clear();
    auto first = this->item(core::pasteboardTypes::string, "one");
    first.representations.push_back({std::string(core::pasteboardTypes::html), this->bytesOf("<b>one</b>")});
    first.strings.emplace_back(core::pasteboardTypes::source, "com.example.source");
    ASSERT_TRUE(pasteboard.write({first, this->item(core::pasteboardTypes::string, "two")}));
    const auto count = pasteboard.changeCount();
    const auto types = pasteboard.itemTypes();
    ASSERT_EQ(types.size(), 2U);
    for (const auto type :
         {core::pasteboardTypes::string, core::pasteboardTypes::html, core::pasteboardTypes::source}) {
        EXPECT_NE(std::ranges::find(types[0], type), types[0].end()) << type;
    }
    EXPECT_EQ(**pasteboard.data(0, core::pasteboardTypes::html), this->bytesOf("<b>one</b>"));
    EXPECT_EQ(**pasteboard.data(1, core::pasteboardTypes::string), this->bytesOf("two"));
    EXPECT_EQ(pasteboard.string(core::pasteboardTypes::source), "com.example.source");
    this->driver.settle();
    EXPECT_EQ(pasteboard.changeCount(), count);
}

TYPED_TEST_P(PasteboardContract, AStringIsWrittenAsOneItem) {
    auto& pasteboard = this->driver.pasteboard();
    pasteboard.clear();
    ASSERT_TRUE(pasteboard.setString(core::pasteboardTypes::string, "plain"));
    EXPECT_EQ(pasteboard.itemTypes().size(), 1U);
    EXPECT_EQ(pasteboard.string(core::pasteboardTypes::string), "plain");
}

TYPED_TEST_P(PasteboardContract, NothingCannotBeWritten) {
    this->driver.pasteboard().clear();
    EXPECT_FALSE(this->driver.pasteboard().write({}));
}

TYPED_TEST_P(PasteboardContract, AnotherApplicationReplacesWrittenContents) {
    auto& pasteboard = this->driver.pasteboard();
    pasteboard.clear();
    ASSERT_TRUE(pasteboard.setString(core::pasteboardTypes::string, "ours"));
    const auto before = pasteboard.changeCount();
    this->driver.copyText("theirs");
    ASSERT_TRUE(this->driver.waitUntil([&] { return pasteboard.string(core::pasteboardTypes::string) == "theirs"; }));
    EXPECT_GT(pasteboard.changeCount(), before);
}

TYPED_TEST_P(PasteboardContract, FilesThatAreCopiedAreFoundOnAnyThreadWhileTheyAreThere) {
    const live::TemporaryFolder files;
    const auto file = files.file("\xD7\xA9 1.txt");
    const auto url = this->driver.fileUrl(file);
    std::optional<std::filesystem::path> found;
    std::thread([&, find = this->driver.pasteboard().fileFinder()] { found = find(url); }).join();
    ASSERT_TRUE(found) << url;
    EXPECT_TRUE(std::filesystem::equivalent(*found, file)) << *found;
    EXPECT_EQ(found->filename(), file.filename());
    const auto find = this->driver.pasteboard().fileFinder();
    EXPECT_EQ(find("file:///a%20b"), "/a b"); // a path is one whether or not there is a file
    EXPECT_FALSE(find("https://example.org/a"));
    EXPECT_FALSE(find("no url"));
    std::filesystem::remove(file);
    found = find(url);
    EXPECT_FALSE(found && exists(*found)) << *found;
    found = find("file:///.file/id=0.0");
    EXPECT_FALSE(found && exists(*found)) << *found;
}

REGISTER_TYPED_TEST_SUITE_P(PasteboardContract, AnotherApplicationsTextCanBeReadOnceTheCountHasMoved,
                            ReadingChangesNothing, ClearingMovesTheCountAndLeavesNothing,
                            WrittenContentsAreReadBackAtOnceAndTheirCountStays, AStringIsWrittenAsOneItem,
                            NothingCannotBeWritten, AnotherApplicationReplacesWrittenContents,
                            FilesThatAreCopiedAreFoundOnAnyThreadWhileTheyAreThere);

} // namespace quillane::testing
