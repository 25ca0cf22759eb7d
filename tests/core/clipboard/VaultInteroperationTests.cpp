// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/VaultTest.hpp"

#include <nlohmann/json.hpp>

#include <cstdlib>

#include <sys/wait.h>

namespace quillane::core {
namespace {

using nlohmann::json;
using testing::bytesOf;

std::string hex(const std::vector<std::byte>& bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const auto byte : bytes) {
        text += digits[std::to_integer<unsigned>(byte) >> 4U];
        text += digits[std::to_integer<unsigned>(byte) & 0x0fU];
    }
    return text;
}

json jsonOf(const std::vector<ClipboardEntry>& entries) {
    json list = json::array();
    for (const auto& entry : entries) {
        json items = json::array();
        for (const auto& item : *entry.items) {
            json representations = json::array();
            for (const auto& representation : item) {
                representations.push_back({{"type", representation.type}, {"data", hex(*representation.data)}});
            }
            items.push_back(std::move(representations));
        }
        list.push_back({{"id", entry.id.toString()},
                        {"digest", entry.digest},
                        {"kind", rawValue(entry.kind)},
                        {"text", *entry.text},
                        {"source", entry.source},
                        {"sourceName", entry.sourceName},
                        {"createdAt", entry.createdAt.secondsSinceReferenceDate},
                        {"copiedAt", entry.copiedAt.secondsSinceReferenceDate},
                        {"pinned", entry.pinned},
                        {"items", std::move(items)}});
    }
    return list;
}

/// Another implementation of the format: a script on two common libraries.
class VaultInteroperationTest : public testing::VaultTest {
protected:
    std::string run(const std::string& mode, const std::string& input) const {
        write(root_ / "input", input);
        const auto output = root_ / "output";
        const std::string command = "python3 '" QUILLANE_VAULT_SCRIPT "' " + mode + " '" + folder_.string() + "' " +
                                    hex(std::vector(32, std::byte{0x42})) + " <'" + (root_ / "input").string() +
                                    "' >'" + output.string() + "'";
        const int status = std::system(command.c_str());
        EXPECT_EQ(status, 0);
        return contents(output);
    }

    const std::vector<ClipboardEntry> entries_ = [] {
        auto text = testing::textEntry("שָׁלוֹם \"hello\"\n\t😀", 700'000'000.5);
        text.pinned = true;
        text.createdAt = Date{-1.25};
        std::vector<std::byte> everyByte(256);
        for (std::size_t i = 0; i < everyByte.size(); ++i) {
            everyByte[i] = static_cast<std::byte>(i);
        }
        // The same bytes twice: writers may store equal values once.
        auto image = ClipboardEntry::make(ClipboardKind::image, "", "", "Näme",
                                          {{{"public.png", everyByte}, {"public.tiff", everyByte}}}, Date{3});
        auto files = ClipboardEntry::make(
            ClipboardKind::files, "a\nb", "com.example.files", "Files",
            {{{"public.file-url", bytesOf("file:///a")}}, {{"public.file-url", bytesOf("file:///b")}}}, Date{0});
        auto large = testing::textEntry(std::string(70'000, 'x'), 1);
        return std::vector{text, image, files, large};
    }();
};

TEST_F(VaultInteroperationTest, AnotherImplementationReadsItsFiles) {
    saved(entries_);
    EXPECT_EQ(json::parse(run("read", "")), jsonOf(entries_));
}

TEST_F(VaultInteroperationTest, ReadsFilesOfAnotherImplementation) {
    std::filesystem::create_directories(folder_);
    run("write", jsonOf(entries_).dump());
    EXPECT_EQ(vault().load(), entries_);
}

} // namespace
} // namespace quillane::core
