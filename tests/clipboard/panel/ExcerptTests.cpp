// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/Excerpt.hpp"

#include "clipboard/panel/TextBlock.hpp"
#include "support/OffscreenApplication.hpp"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace quillane {
namespace {

QStringList bold(const Excerpt& shown) {
    QStringList pieces;
    for (const auto& range : shown.bold) {
        pieces << shown.text.mid(range.begin, range.length);
    }
    return pieces;
}

TEST(Excerpt, IsOnOneLineWithoutSuperfluousSpaces) {
    EXPECT_EQ(excerpt("  one\n\n\ttwo\u2028three\x01 ", core::SearchQuery("")).text, "one two three");
    EXPECT_EQ(excerpt(" \n ", core::SearchQuery("")).text, "");
    EXPECT_EQ(excerpt(std::string(100'000, 'x'), core::SearchQuery("")).text.size(), Excerpt::maximumCharacters);
}

TEST(Excerpt, MatchesAreBoldInWhateverScript) {
    EXPECT_EQ(bold(excerpt("😀 The brown שָׁלוֹם", core::SearchQuery("שלום BROWN"))), (QStringList{"brown", "שָׁלוֹם"}));
}

TEST(Excerpt, BeginsAroundAMatchThatIsFurtherOn) {
    std::string text;
    for (int i = 0; i < 2000; ++i) {
        text += "אבג ";
    }
    text += "needle in the hay";
    const auto shown = excerpt(text, core::SearchQuery("needle"));
    EXPECT_TRUE(shown.text.startsWith(QStringLiteral("… אבג")));
    EXPECT_EQ(bold(shown), QStringList{"needle"});
    EXPECT_LT(shown.bold.front().begin, 40);
}

TEST(Excerpt, TheDirectionIsThatOfTheFirstStrongCharacterOutsideIsolates) {
    EXPECT_EQ(directionOf("123 abc שלום"), Qt::LeftToRight);
    EXPECT_EQ(directionOf("... שלום abc"), Qt::RightToLeft);
    EXPECT_EQ(directionOf("\u2068abc\u2069 مرحبا"), Qt::RightToLeft);
    EXPECT_EQ(directionOf("\u2066a\u2067b\u2069c"), std::nullopt);
    EXPECT_EQ(directionOf("+972-3-555"), std::nullopt);
}

/// Where the block is drawn in 300 by 60 points.
struct Drawn {
    int left = 300;
    int right = 0;
};

Drawn drawn(const TextBlock& block) {
    QImage image(300, 60, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    block.draw(painter, image.rect());
    painter.end();
    Drawn place;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).lightness() < 128) {
                place = {std::min(place.left, x), std::max(place.right, x)};
            }
        }
    }
    return place;
}

TEST(TextBlock, StandsOnTheSideOfItsOwnDirectionUnlessItBelongsToTheInterface) {
    const fakes::OffscreenApplication application;
    const auto block = [](const char* text, Qt::LayoutDirection interface) {
        return TextBlock{{text, {}}, QFont(), Qt::black, interface};
    };
    for (const auto interface : {Qt::LeftToRight, Qt::RightToLeft}) {
        EXPECT_GT(drawn(block("שלום abc", interface)).right, 290);
        EXPECT_LT(drawn(block("abc שלום", interface)).left, 10);
    }
    EXPECT_LT(drawn(block("12345", Qt::LeftToRight)).left, 10);
    EXPECT_GT(drawn(block("12345", Qt::RightToLeft)).right, 290);
    auto name = block("report.pdf", Qt::RightToLeft);
    name.alignment = TextBlock::Alignment::interface;
    EXPECT_GT(drawn(name).right, 290);
}

TEST(TextBlock, OverlongTextEndsWithinTheLines) {
    const fakes::OffscreenApplication application;
    TextBlock block{{QStringLiteral("word ").repeated(80), {}}, QFont(), Qt::black};
    block.maximumLines = 2;
    EXPECT_EQ(block.size(300).height(), 2 * TextBlock::lineHeight(QFont()));
    EXPECT_LE(block.size(300).width(), 300);
    block.content.text = QStringLiteral("short");
    EXPECT_EQ(block.size(300).height(), TextBlock::lineHeight(QFont()));
    block.content.text = QString(200, QLatin1Char('x'));
    EXPECT_LE(block.size(300).width(), 300);
}

} // namespace
} // namespace quillane
