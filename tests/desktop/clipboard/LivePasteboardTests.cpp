// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/clipboard/X11Pasteboard.hpp"

#include "core/clipboard/ClipboardSnapshot.hpp"
#include "core/clipboard/PasteboardTypes.hpp"
#include "desktop/fixture/LiveDesktopTest.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <QBuffer>
#include <QImage>

#include <array>
#include <future>
#include <optional>
#include <random>

namespace quillane::live {
namespace {

using core::ClipboardKind;
using core::clipboardSnapshot::RestoreMode;
namespace Types = core::pasteboardTypes;

constexpr std::chrono::milliseconds largeTransfer{60'000};

std::string textOf(const core::SharedBytes& bytes) {
    return {reinterpret_cast<const char*>(bytes->data()), bytes->size()};
}

/// A picture that does not compress: about four bytes a pixel.
std::string png(int width, int height) {
    QImage image(width, height, QImage::Format_RGBA8888);
    std::mt19937 random(1);
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<std::uint32_t*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            line[x] = static_cast<std::uint32_t>(random());
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG", 100); // 100 means no compression
    return bytes.toStdString();
}

/// The pasteboard of this process on a desktop with real applications.
class LivePasteboardTest : public LiveDesktopTest {
protected:
    LivePasteboardTest() : application_(argc_, argv_.data()) {}

    void SetUp() override {
        LiveDesktopTest::SetUp();
        connection_ = std::move(*X11Connection::open(desktop().display()));
        pasteboard_ = std::make_unique<X11Pasteboard>(*connection_);
        pasteboard_->setInterest([](const auto& types, const auto& source) {
            return core::clipboardSnapshot::wantedTypes(types, core::ClipboardOptions{}, {}, source);
        });
        counting_ = pasteboard_->onChanged([this] { ++notices_; });
    }

    void TearDown() override {
        LiveDesktopTest::TearDown();
        copying_.reset();
        editor_.reset();
        pasteboard_.reset();
        connection_.reset();
    }

    [[nodiscard]] X11Pasteboard& pasteboard() { return *pasteboard_; }

    [[nodiscard]] std::string file(const std::string& name, std::string_view content) {
        const auto path = desktop().home() / name;
        require(writeFile(path, content), "no file " + name);
        return path;
    }

    /// Performs the steps and waits until their copy has been read from its owner, or given up.
    template <typename Steps>
    void copy(const Steps& steps) {
        const auto before = notices_;
        steps();
        ASSERT_TRUE(testing::waitUntil([&] { return notices_ >= before + 2; }, largeTransfer));
    }

    /// The previous program has ended, so that its end is not mistaken for the next copy.
    void endCopying() {
        if (copying_) {
            const auto before = pasteboard().changeCount();
            copying_.reset();
            ASSERT_TRUE(testing::waitUntil([&] { return pasteboard().changeCount() > before; }, defaultTimeout));
        }
    }

    void copyWithXclip(const std::string& target, const std::string& path) {
        endCopying();
        copy([&] {
            copying_ = required(
                desktop().startProcess({"xclip", "-quiet", "-selection", "clipboard", "-t", target, "-i", path}));
        });
    }

    /// A Qt application copies files' contents as these types.
    void copyWithQt(const std::vector<std::string>& typesAndFiles) {
        endCopying();
        std::vector<std::string> command{QUILLANE_COPY_STANDIN};
        command.insert(command.end(), typesAndFiles.begin(), typesAndFiles.end());
        copy([&] { copying_ = required(desktop().startProcess(command)); });
    }

    [[nodiscard]] std::optional<core::ClipboardEntry> capture() const {
        return core::clipboardSnapshot::capture(*pasteboard_, core::ClipboardOptions{},
                                                {"com.example.front", "Front", false, core::Date{1}});
    }

    /// What xclip reads from the clipboard.
    [[nodiscard]] std::string pasteWithXclip(const std::string& target) {
        const auto path = desktop().home() / "pasted";
        auto pasting = required(
            desktop().startProcess({"sh", "-c", "exec xclip -selection clipboard -t \"$0\" -o >~/pasted", target}));
        EXPECT_TRUE(testing::waitUntil([&] { return !pasting.isRunning(); }, largeTransfer));
        return readFile(path);
    }

    void startEditor(const std::vector<std::string>& command) {
        editor_ = required(desktop().startApplication(command));
        expectEditorText("");
    }

    /// The text in the editor. Keeps serving the clipboard meanwhile: an editor that waits for pasted contents does not
    /// answer.
    [[nodiscard]] std::string editorText() {
        auto text = std::async(std::launch::async, [this] { return desktop().editorText(editor_->pid()); });
        EXPECT_TRUE(testing::waitUntil(
            [&] { return text.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, defaultTimeout));
        return text.get().value_or("(no focused editor)");
    }

    void expectEditorText(const std::string& text) {
        std::string last;
        EXPECT_TRUE(testing::waitUntil([&] { return (last = editorText()) == text; }, defaultTimeout))
            << "expected: " << text << "\nin the editor: " << last;
    }

    void restore(const core::ClipboardEntry& entry, RestoreMode mode = RestoreMode::full) {
        ASSERT_TRUE(core::clipboardSnapshot::restore(entry, pasteboard(), mode));
    }

    void expectPastedIntoEditor(const std::string& text) {
        desktop().keyboard().chord({Key::leftControl, Key::v});
        expectEditorText(text);
    }

    /// Types, copies all, and pastes it after something else has been on the clipboard.
    void expectCopiedAndPastedBack(const std::vector<std::string>& command) {
        startEditor(command);
        desktop().keyboard().type("asd fgh");
        expectEditorText("asd fgh");
        desktop().keyboard().chord({Key::leftControl, Key::a});
        copy([&] { desktop().keyboard().chord({Key::leftControl, Key::c}); });
        const auto copied = capture();
        ASSERT_TRUE(copied);
        EXPECT_EQ(*copied->text, "asd fgh");
        EXPECT_EQ(copied->kind, ClipboardKind::text);
        copyWithXclip("UTF8_STRING", file("text", "between"));
        endCopying();
        restore(*copied);
        desktop().keyboard().tap(Key::end);
        desktop().keyboard().type("z");
        expectEditorText("asd fghz");
        desktop().keyboard().chord({Key::leftControl, Key::a});
        expectPastedIntoEditor("asd fgh"); // over what is selected
        expectPastedIntoEditor("asd fghasd fgh");
        restore(core::ClipboardEntry::make(ClipboardKind::text, "x", "", "", textItems("مرحبا שלום 😀"), core::Date{2}),
                RestoreMode::plainText);
        expectPastedIntoEditor("asd fghasd fghمرحبا שלום 😀");
    }

    static core::ClipboardItems textItems(std::string_view text) {
        const auto bytes = std::as_bytes(std::span(text));
        return {{{std::string(Types::string), std::vector(bytes.begin(), bytes.end())},
                 {std::string(Types::html), std::vector(bytes.begin(), bytes.end())}}};
    }

private:
    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QCoreApplication application_;
    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<X11Pasteboard> pasteboard_;
    int notices_ = 0; ///< that the pasteboard has given
    core::Subscription counting_;
    std::optional<ChildProcess> copying_;
    std::optional<ChildProcess> editor_;
};

TEST_F(LivePasteboardTest, CopiesOfXclipAreCaptured) {
    copyWithXclip("UTF8_STRING", file("text", "שלום עולם"));
    ASSERT_TRUE(capture());
    EXPECT_EQ(*capture()->text, "שלום עולם");
    EXPECT_EQ(capture()->source, "com.example.front");

    copyWithXclip("text/html", file("html", "<p dir=rtl>שלום</p>"));
    ASSERT_TRUE(capture());
    EXPECT_EQ(capture()->items->front().front().type, Types::html);
    EXPECT_EQ(textOf(capture()->items->front().front().data), "<p dir=rtl>שלום</p>");

    const auto picture = png(1'900, 2'070);
    ASSERT_GT(picture.size(), 15'000'000U);
    ASSERT_LT(picture.size(), 17'000'000U);
    copyWithXclip("image/png", file("picture.png", picture));
    ASSERT_TRUE(capture());
    EXPECT_EQ(capture()->kind, ClipboardKind::image);
    EXPECT_EQ(*capture()->text, "");
    EXPECT_EQ(textOf(capture()->items->front().front().data), picture);

    const auto first = file("one two.txt", "1");
    const auto second = file("שלוש.txt", "2");
    copyWithXclip("text/uri-list",
                  file("list", "file://" + desktop().home().string() + "/one%20two.txt\r\nfile://" + second + "\r\n"));
    ASSERT_TRUE(capture());
    EXPECT_EQ(capture()->kind, ClipboardKind::files);
    EXPECT_EQ(capture()->items->size(), 2U);
    EXPECT_EQ(*capture()->text, "one two.txt\nשלוש.txt");
}

TEST_F(LivePasteboardTest, TooLargeOrConcealedCopiesAreRefused) {
    const auto picture = png(2'400, 2'735);
    ASSERT_GT(picture.size(), 25 * 1'048'576U);
    copyWithXclip("image/png", file("picture.png", picture));
    EXPECT_FALSE(capture());
    copyWithXclip("x-kde-passwordManagerHint", file("hint", "secret"));
    EXPECT_FALSE(capture());
    copyWithQt({"text/plain", file("password", "hunter2"), "x-kde-passwordManagerHint", file("hint", "secret")});
    EXPECT_FALSE(capture());
    EXPECT_EQ(pasteboard().string(Types::string), std::nullopt);
    copyWithQt({"text/plain", file("password", "hunter2"), "org.nspasteboard.ConcealedType", file("hint", "")});
    EXPECT_FALSE(capture());
    copyWithQt({"text/plain", file("password", "no secret")});
    ASSERT_TRUE(capture());
    EXPECT_EQ(*capture()->text, "no secret");
}

TEST_F(LivePasteboardTest, CopiesOfAQtApplicationAreCapturedWithEveryFlavour) {
    copyWithQt({"text/plain", file("text", "bold"), "text/html", file("html", "<b>bold</b>"), "com.example.private",
                file("private", "x")});
    const auto styled = capture();
    ASSERT_TRUE(styled);
    EXPECT_EQ(*styled->text, "bold");
    ASSERT_EQ(styled->items->front().size(), 2U);
    EXPECT_EQ(styled->items->front()[0].type, Types::string);
    EXPECT_EQ(styled->items->front()[1].type, Types::html);

    const auto here = file("here.txt", "1");
    copyWithQt({"text/uri-list", file("list", "file://" + here + "\r\n"), "text/plain", file("text", here)});
    ASSERT_TRUE(capture());
    EXPECT_EQ(capture()->kind, ClipboardKind::files);
    EXPECT_EQ(*capture()->text, "here.txt");

    const auto bracketed = file("report [1].txt", "1");
    copyWithQt({"text/uri-list", file("list", "file://" + desktop().home().string() + "/report%20[1].txt\r\n")});
    ASSERT_TRUE(capture());
    EXPECT_EQ(*capture()->text, "report [1].txt");
    restore(*capture());
    EXPECT_EQ(pasteWithXclip("text/uri-list"), "file://" + desktop().home().string() + "/report%20[1].txt\r\n");
}

TEST_F(LivePasteboardTest, ARestoredEntryIsServedAfterItsOwnerHasGone) {
    const auto picture = png(1'900, 2'070);
    copyWithXclip("image/png", file("picture.png", picture));
    const auto image = capture();
    ASSERT_TRUE(image);
    copyWithQt({"text/plain", file("text", "bold"), "text/html", file("html", "<b>bold</b>")});
    const auto styled = capture();
    ASSERT_TRUE(styled);
    const auto here = file("here.txt", "1");
    copyWithXclip("text/uri-list", file("list", "file://" + here + "\r\nfile://" + here + "\r\n"));
    const auto files = capture();
    ASSERT_TRUE(files);
    endCopying();

    restore(*image);
    EXPECT_EQ(pasteWithXclip("image/png"), picture);
    EXPECT_EQ(pasteWithXclip("org.nspasteboard.source"), "com.example.front");
    restore(*styled);
    EXPECT_EQ(pasteWithXclip("UTF8_STRING"), "bold");
    EXPECT_EQ(pasteWithXclip("text/html"), "<b>bold</b>");
    restore(*files);
    EXPECT_EQ(pasteWithXclip("text/uri-list"), "file://" + here + "\r\nfile://" + here + "\r\n");

    // A missing file leaves the clipboard unchanged.
    std::filesystem::remove(here);
    EXPECT_FALSE(core::clipboardSnapshot::restore(*files, pasteboard(), RestoreMode::full));
    EXPECT_EQ(pasteWithXclip("text/uri-list"), "file://" + here + "\r\nfile://" + here + "\r\n");
}

TEST_F(LivePasteboardTest, AGtkEditorsTextIsCapturedAndPastedBack) {
    expectCopiedAndPastedBack({"mousepad", "--disable-server"});
}

TEST_F(LivePasteboardTest, AQtEditorsTextIsCapturedAndPastedBack) {
    expectCopiedAndPastedBack({"featherpad", "--standalone"});
}

} // namespace
} // namespace quillane::live
