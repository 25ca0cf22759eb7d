// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace quillane {
namespace {

const std::filesystem::path folder = std::filesystem::path(QUILLANE_PACKAGING) / "linux" / "file-managers";

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(FileManagers, EveryEntryRunsTheCommandAndHasItsNameInThreeLanguages) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const auto text = contentOf(entry.path());
        for (const auto* line :
             {"\nName=Share with Quillane\n", "\nName[he]=שיתוף באמצעות Quillane\n",
              "\nName[ar]=مشاركة باستخدام Quillane\n", "=com.quillane.app\n", "\nExec=quillane share %F\n"}) {
            EXPECT_NE(text.find(line), std::string::npos) << entry.path() << line;
        }
        ++count;
    }
    EXPECT_EQ(count, 4);
}

TEST(FileManagers, ADoubleClickNeverSharesAFile) {
    // A desktop file with MIME types becomes the default for files that nothing else opens.
    const auto text = contentOf(std::filesystem::path(QUILLANE_PACKAGING) / "linux" / "com.quillane.app.desktop");
    EXPECT_NE(text.find("[Desktop Action Share]"), std::string::npos);
    EXPECT_EQ(text.find("MimeType"), std::string::npos);
}

TEST(DesktopEntry, CommentAndKeywordsStandInThreeLanguages) {
    const auto text = contentOf(std::filesystem::path(QUILLANE_PACKAGING) / "linux" / "com.quillane.app.desktop");
    // What the program does, and words that a user may search for.
    for (const auto* line : {"\nComment=Keyboard and writing direction for Hebrew", "\nComment[he]=מקלדת וכיוון כתיבה",
                             "\nComment[ar]=لوحة المفاتيح واتجاه الكتابة"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line;
    }
    for (const auto* word : {"\nKeywords=", ";clipboard;", ";hebrew;", "\nKeywords[he]=", ";לוח;", ";עברית;",
                             "\nKeywords[ar]=", ";حافظة;", ";عربية;"}) {
        EXPECT_NE(text.find(word), std::string::npos) << word;
    }
}

} // namespace
} // namespace quillane
