// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardManager.hpp"
#include "fakes/FakeClipboardDesktop.hpp"
#include "platform/linux/clipboard/X11PasteboardTest.hpp"

namespace quillane {
namespace {

/// The clipboard history over a real selection, with an editor in front. The owner answers late.
class LateOwnerTest : public X11PasteboardTest {
protected:
    LateOwnerTest() {
        core::ClipboardOptions options;
        options.enabled = true;
        options.ignoredApps = {"com.example.vault"};
        manager_.setOptions(options);
        desktop_.workspace.activate(editor_);
        manager_.start();
    }

    void finishLoading() {
        desktop_.vaultQueue.wait();
        desktop_.queue.runPosted();
        ASSERT_TRUE(manager_.isReady());
    }

    void copy() {
        const auto before = notices_;
        peer_.own({{"UTF8_STRING", "late"}}, Manner::late);
        ASSERT_TRUE(waitUntil([&] { return notices_ == before + 1; }));
    }

    /// Another program copies, is asked and does not answer yet.
    void copyUnanswered() {
        copy();
        ASSERT_TRUE(waitUntil([&] { return !peer_.asked().empty(); }));
    }

    void answer() {
        const auto before = notices_;
        peer_.answerNow();
        ASSERT_TRUE(waitUntil([&] { return notices_ > before; }));
        desktop_.queue.advance(std::chrono::seconds(2));
    }

    [[nodiscard]] std::vector<std::string> recorded() const {
        std::vector<std::string> texts;
        for (const auto& entry : manager_.history().entries()) {
            texts.push_back(*entry.text);
        }
        return texts;
    }

    fakes::FakeClipboardDesktop desktop_;
    pid_t editor_ = desktop_.workspace.open("com.example.editor", "Editor");
    ClipboardManager manager_{overSelection(), desktop_.folder(), [] { return core::Date{1}; }};

private:
    const Platform& overSelection() {
        desktop_.platform.pasteboard = std::move(ownedPasteboard_);
        return desktop_.platform;
    }
};

TEST_F(LateOwnerTest, CopyIsRecordedFromWhereItWasMade) {
    finishLoading();
    copyUnanswered();
    desktop_.workspace.activate(desktop_.workspace.open("com.example.viewer", "Viewer"));
    answer();
    ASSERT_THAT(recorded(), ElementsAre("late"));
    EXPECT_EQ(manager_.history().entries().front().source, "com.example.editor");
}

TEST_F(LateOwnerTest, CopyMadeWhilePausedIsNotRecorded) {
    finishLoading();
    manager_.configure({.paused = true});
    copy();
    manager_.configure({});
    desktop_.queue.advance(std::chrono::seconds(2));
    EXPECT_THAT(recorded(), IsEmpty());
    EXPECT_THAT(peer_.asked(), IsEmpty());
}

TEST_F(LateOwnerTest, CopyMadeWhileTheHistoryIsLoadingIsNotRecorded) {
    copyUnanswered();
    finishLoading();
    answer();
    EXPECT_THAT(recorded(), IsEmpty());
    EXPECT_THAT(peer_.asked(), ElementsAre("TARGETS"));
}

TEST_F(LateOwnerTest, CopyFromAnExcludedApplicationIsNeitherFetchedNorRecorded) {
    finishLoading();
    desktop_.workspace.activate(desktop_.workspace.open("com.example.vault", "Vault"));
    copyUnanswered();
    desktop_.workspace.activate(editor_);
    answer();
    EXPECT_THAT(recorded(), IsEmpty());
    EXPECT_THAT(peer_.asked(), ElementsAre("TARGETS"));
}

TEST_F(LateOwnerTest, OfACopyWhoseSourceIsExcludedNothingButTheSourceIsAskedFor) {
    finishLoading();
    int expected = 0;
    for (const auto* source : {"com.example.vault", "com.bitwarden.desktop"}) {
        copied({{"UTF8_STRING", "password"},
                {"text/uri-list", "file:///password"},
                {"image/png", "password"},
                {"org.nspasteboard.source", source}});
        desktop_.queue.advance(std::chrono::seconds(2));
        EXPECT_THAT(recorded(), IsEmpty());
        EXPECT_EQ(peer_.asked().size(), static_cast<std::size_t>(expected += 2));
    }
    EXPECT_THAT(peer_.asked(), ElementsAre("TARGETS", "org.nspasteboard.source", "TARGETS", "org.nspasteboard.source"));
    copied({{"UTF8_STRING", "text"}, {"org.nspasteboard.source", "com.example.other"}});
    ASSERT_THAT(recorded(), ElementsAre("text"));
    EXPECT_EQ(manager_.history().entries().front().source, "com.example.other");
}

TEST_F(LateOwnerTest, WhileSecureInputIsOnNotEvenTheSourceIsAskedFor) {
    finishLoading();
    desktop_.secureInput.setEnabled(true);
    copied({{"UTF8_STRING", "password"}, {"org.nspasteboard.source", "com.example.other"}});
    desktop_.queue.advance(std::chrono::seconds(2));
    EXPECT_THAT(recorded(), IsEmpty());
    EXPECT_THAT(peer_.asked(), ElementsAre("TARGETS"));
}

} // namespace
} // namespace quillane
