// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "views/WrappingLabel.hpp"

#include "support/OffscreenApplication.hpp"

#include <QImage>

#include <gtest/gtest.h>

#include <set>

namespace quillane {
namespace {

class WrappingLabelTest : public testing::Test {
protected:
    WrappingLabelTest() {
        QFont font(QStringLiteral("Noto Sans"));
        font.setFamilies({"Noto Sans", "Noto Sans Hebrew", "Noto Sans Arabic"});
        font.setPointSizeF(10);
        QApplication::setFont(font);
    }

    /// The columns at which the ink of the lines begins, counted from the side where the text begins.
    static std::set<int> beginnings(QLabel& label, bool isRightToLeft) {
        label.resize(width, label.heightForWidth(width));
        QImage image(label.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        label.render(&image, {}, {}, QWidget::DrawChildren);
        std::set<int> found;
        const int lineHeight = label.fontMetrics().lineSpacing();
        for (int top = 0; top + lineHeight <= image.height(); top += lineHeight) {
            for (int column = 0; column < image.width(); ++column) {
                const int x = isRightToLeft ? image.width() - 1 - column : column;
                bool isInked = false;
                for (int y = top; y < top + lineHeight; ++y) {
                    isInked = isInked || qGray(image.pixel(x, y)) < 128;
                }
                if (isInked) {
                    found.insert(column);
                    break;
                }
            }
        }
        return found;
    }

    static constexpr int width = 120;

private:
    fakes::OffscreenApplication application_;
};

QString repeated(const char* word) {
    QString text = QString::fromUtf8(word);
    for (int i = 0; i < 30; ++i) {
        text += QLatin1Char(' ') + QString::fromUtf8(word);
    }
    return text;
}

TEST_F(WrappingLabelTest, EveryLineOfAHebrewParagraphBeginsFlush) {
    WrappingLabel label;
    label.setText(repeated("אבג"));
    EXPECT_EQ(beginnings(label, true).size(), 1U);
}

TEST_F(WrappingLabelTest, EveryLineOfAnEnglishParagraphBeginsFlush) {
    WrappingLabel label;
    label.setText(repeated("Had"));
    EXPECT_EQ(beginnings(label, false).size(), 1U);
}

TEST_F(WrappingLabelTest, TakesTheRoomOfAPlainLabelAndFillsIt) {
    for (const auto* word : {"אבג", "مرحبا", "Had"}) {
        WrappingLabel label;
        label.setText(repeated(word));
        QLabel plain;
        plain.setTextFormat(Qt::PlainText);
        plain.setWordWrap(true);
        plain.setText(label.text());
        EXPECT_EQ(label.heightForWidth(width), plain.heightForWidth(width));
        EXPECT_EQ(label.sizeHint(), plain.sizeHint());
        label.resize(width, label.heightForWidth(width));
        const auto picture = label.grab().toImage();
        const auto ground = picture.pixel(0, 0);
        const int lastLine = picture.height() - label.fontMetrics().lineSpacing();
        int drawn = 0;
        for (int y = lastLine; y < picture.height(); ++y) {
            for (int x = 0; x < width; ++x) {
                drawn += picture.pixel(x, y) != ground ? 1 : 0;
            }
        }
        EXPECT_GT(drawn, 20) << word;
    }
}

TEST_F(WrappingLabelTest, AlignmentAndColourAreTheLabels) {
    WrappingLabel label;
    label.setText("Had");
    label.setAlignment(Qt::AlignRight | Qt::AlignBottom);
    auto colors = label.palette();
    colors.setColor(QPalette::WindowText, Qt::red);
    label.setPalette(colors);
    label.resize(200, 200);
    const auto picture = label.grab().toImage();
    QRect ink;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const auto color = picture.pixelColor(x, y);
            if (color.red() > 200 && color.green() < 60) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    EXPECT_GT(ink.left(), 150);
    EXPECT_GT(ink.top(), 170);
}

} // namespace
} // namespace quillane
