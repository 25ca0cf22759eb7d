// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardVault.hpp"
#include "core/support/SealedBox.hpp"
#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillane::core::testing {

inline std::vector<std::byte> bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

inline SecretBytes testKey() {
    return SecretBytes(std::vector(32, std::byte{0x42}));
}

inline ClipboardEntry textEntry(const std::string& text, double copiedAt) {
    return ClipboardEntry::make(ClipboardKind::text, text, "com.example.notes", "Notes",
                                {{{"public.utf8-plain-text", bytesOf(text)}}}, Date{copiedAt});
}

/// A vault's folder in a folder of its own, removed with the test.
class VaultTest : public ::testing::Test {
protected:
    [[nodiscard]] ClipboardVault vault(SecretBytes key = testKey()) const {
        auto opened = ClipboardVault::open(folder_, std::move(key));
        if (!opened) {
            throw std::runtime_error("the vault cannot be opened");
        }
        return std::move(*opened);
    }

    void saved(const std::vector<ClipboardEntry>& entries) const {
        auto fresh = vault();
        ASSERT_TRUE(fresh.save(entries));
    }

    [[nodiscard]] std::filesystem::path fileOf(const ClipboardEntry& entry) const {
        return folder_ / (entry.id.toString() + ".clip");
    }

    [[nodiscard]] std::set<std::string> fileNames() const {
        std::set<std::string> names;
        for (const auto& file : std::filesystem::directory_iterator(folder_)) {
            names.insert(file.path().filename());
        }
        return names;
    }

    static std::string contents(const std::filesystem::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static void write(const std::filesystem::path& file, std::string_view bytes) {
        std::ofstream(file, std::ios::binary) << bytes;
    }

    /// Writes a file as the vault would, with whatever plaintext.
    static void writeSealed(const std::filesystem::path& file, std::span<const std::byte> plaintext) {
        const auto box = *sealedBox::seal(testKey(), plaintext);
        write(file, {reinterpret_cast<const char*>(box.data()), box.size()});
    }

private:
    live::TemporaryFolder temporary_;

protected:
    const std::filesystem::path root_ = temporary_.path();
    std::filesystem::path folder_ = root_ / "Quillane" / "ClipboardHistory";
};

} // namespace quillane::core::testing
