// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/EntryImages.hpp"

#include "core/clipboard/PasteboardTypes.hpp"
#include "fakes/FakeMainQueue.hpp"
#include "fakes/FakePasteboard.hpp"
#include "fakes/FakeSerialQueue.hpp"

#include <QBuffer>

#include <gtest/gtest.h>

#include <memory>

namespace quillane {
namespace {

namespace types = core::pasteboardTypes;

std::string encoded(QSize size, const char* format, int shade = 0) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(QColor(shade % 256, shade / 256, 100));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes.toStdString();
}

core::ClipboardEntry imageEntry(const std::string& bytes, std::string_view type = types::png) {
    return core::ClipboardEntry::make(core::ClipboardKind::image, "", "", "",
                                      {{{std::string(type), fakes::bytesOf(bytes)}}}, {});
}

/// The checksum of a PNG chunk (RFC 2083, section 15).
std::uint32_t checksum(std::string_view bytes) {
    std::uint32_t crc = 0xffffffffU;
    for (const auto byte : bytes) {
        crc ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1U) != 0 ? 0xedb88320U ^ crc >> 1U : crc >> 1U;
        }
    }
    return ~crc;
}

std::string bigEndian(std::uint32_t number) {
    std::string bytes;
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        bytes += static_cast<char>(number >> shift);
    }
    return bytes;
}

/// A small file that claims to be of that size.
std::string pngThatClaims(std::uint32_t width, std::uint32_t height) {
    auto bytes = encoded({8, 8}, "png");
    bytes.replace(16, 8, bigEndian(width) + bigEndian(height));
    bytes.replace(29, 4, bigEndian(checksum(std::string_view(bytes).substr(12, 17))));
    return bytes;
}

TEST(ImageDecoding, MakesPicturesSmallAndNeverLarge) {
    const auto wide = decodeImage(*imageEntry(encoded({800, 200}, "png")).items, {120, 60});
    EXPECT_EQ(wide.image.size(), QSize(120, 30));
    EXPECT_EQ(wide.original, QSize(800, 200));
    EXPECT_EQ(decodeImage(*imageEntry(encoded({800, 200}, "jpeg"), types::jpeg).items, {120, 60}).image.size(),
              QSize(120, 30));
    EXPECT_EQ(decodeImage(*imageEntry(encoded({16, 8}, "png")).items, {120, 60}).image.size(), QSize(16, 8));
    EXPECT_EQ(decodeImage(*imageEntry(encoded({4000, 1}, "png")).items, {120, 60}).image.size(), QSize(120, 1));
}

TEST(ImageDecoding, GarbageAndTooLargePicturesAreNotDecoded) {
    EXPECT_TRUE(decodeImage(*imageEntry("no picture").items, {60, 60}).image.isNull());
    EXPECT_TRUE(decodeImage(*imageEntry("").items, {60, 60}).image.isNull());
    EXPECT_TRUE(decodeImage(*imageEntry("<svg width='9' height='9'/>").items, {60, 60}).image.isNull());
    const auto small = decodeImage(*imageEntry(pngThatClaims(8, 8)).items, {60, 60});
    EXPECT_FALSE(small.image.isNull()); // the checksum is right
    const auto huge = decodeImage(*imageEntry(pngThatClaims(100'000, 100'000)).items, {60, 60});
    EXPECT_TRUE(huge.image.isNull());
    EXPECT_EQ(huge.original, QSize(100'000, 100'000));
    auto cut = encoded({300, 300}, "png");
    cut.resize(60);
    EXPECT_TRUE(decodeImage(*imageEntry(cut).items, {60, 60}).image.isNull());
}

class EntryImagesTest : public ::testing::Test {
protected:
    void load() {
        serial.wait();
        queue.runPosted();
    }

    fakes::FakeMainQueue queue;
    fakes::FakeSerialQueue serial;
    EntryImages images{queue, serial};
};

TEST_F(EntryImagesTest, DecodesOnceOnItsQueueAndAnnouncesTheResult) {
    int notifications = 0;
    images.onReady = [&] { ++notifications; };
    const auto entry = imageEntry(encoded({80, 40}, "png"));
    EXPECT_EQ(images.find(entry, {40, 40}), nullptr);
    EXPECT_EQ(images.find(entry, {40, 40}), nullptr);
    EXPECT_EQ(serial.count(), 1U);
    load();
    EXPECT_EQ(notifications, 1);
    ASSERT_NE(images.find(entry, {40, 40}), nullptr);
    EXPECT_EQ(images.find(entry, {40, 40})->image.size(), QSize(40, 20));
    EXPECT_EQ(serial.count(), 0U);
}

TEST_F(EntryImagesTest, AnUndecodablePictureIsRequestedOnce) {
    const auto entry = imageEntry("no picture");
    EXPECT_EQ(images.find(entry, {40, 40}), nullptr);
    load();
    ASSERT_NE(images.find(entry, {40, 40}), nullptr);
    EXPECT_TRUE(images.find(entry, {40, 40})->image.isNull());
}

TEST_F(EntryImagesTest, KeepsNoMoreThanItsBound) {
    for (int i = 0; i < 60; ++i) {
        const auto entry = imageEntry(encoded({400, 400}, "png", i));
        EXPECT_EQ(images.find(entry, {400, 400}), nullptr);
        load();
        EXPECT_LE(images.byteCount(), EntryImages::maximumBytes);
    }
    EXPECT_GT(images.byteCount(), EntryImages::maximumBytes / 2);
}

TEST_F(EntryImagesTest, ADroppedRequestNeverCompletes) {
    int notifications = 0;
    images.onReady = [&] { ++notifications; };
    const auto entry = imageEntry(encoded({80, 40}, "png"));
    EXPECT_EQ(images.find(entry, {40, 40}), nullptr);
    images.dropPending();
    load();
    EXPECT_EQ(notifications, 0);
    EXPECT_EQ(images.find(entry, {40, 40}), nullptr); // asks again
    load();
    EXPECT_EQ(notifications, 1);
}

TEST(EntryImages, MayGoWhileARequestIsOnItsWay) {
    fakes::FakeMainQueue queue;
    fakes::FakeSerialQueue serial;
    auto images = std::make_unique<EntryImages>(queue, serial);
    const auto entry = imageEntry(encoded({80, 40}, "png"));
    EXPECT_EQ(images->find(entry, {40, 40}), nullptr);
    serial.wait();
    images.reset();
    queue.runPosted();
}

} // namespace
} // namespace quillane
