// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/X11PasteboardTest.hpp"

#include <QTemporaryDir>

namespace quillane {
namespace {

/// With short limits.
class UnresponsiveProgramTest : public X11PasteboardTest {
protected:
    UnresponsiveProgramTest() : X11PasteboardTest(strictLimits) {}

    /// A copy by a program that answers is read. On a loaded machine it may take so long that it is given up.
    void expectNextCopyIsRead() {
        for (int attempt = 0; attempt < 10 && capturedText() != "next"; ++attempt) {
            copied({{"UTF8_STRING", "next"}});
        }
        EXPECT_EQ(capturedText(), "next");
    }
};

// Reading

TEST_F(X11PasteboardTest, ReadsTextOfAnyUsualTarget) {
    for (const auto* target : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain"}) {
        copied({{target, "שלום"}});
        EXPECT_EQ(capturedText(), "שלום") << target;
    }
    copied({{"STRING", "caf\xe9"}});
    EXPECT_EQ(capturedText(), "café");
    copied({{"text/plain", "caf\xe9"}});
    EXPECT_EQ(capturedText(), "café");
    copied({{"UTF8_STRING", std::string("ends in NUL\0", 12)}});
    EXPECT_EQ(capturedText(), "ends in NUL");
}

TEST_F(X11PasteboardTest, AnOwnerThatHasNothingToGiveYetIsAskedAgain) {
    peer_.refuseAtFirst(2);
    copied({{"UTF8_STRING", "a moment later"}});
    EXPECT_EQ(capturedText(), "a moment later");
    const auto before = pasteboard_.changeCount();
    peer_.refuseAtFirst(100);
    copied({{"UTF8_STRING", "never"}});
    EXPECT_EQ(pasteboard_.changeCount(), before + 1);
    EXPECT_EQ(capturedText(), "(nothing)");
}

TEST_F(X11PasteboardTest, ReadsStyledTextAndAddresses) {
    copied({{"UTF8_STRING", "x"}, {"text/html", "<b>x</b>"}, {"text/rtf", "{\\rtf1 x}"}, {"com.example.private", "y"}});
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->items->front().size(), 3U);
    const auto address = "h\0t\0t\0p\0s\0:\0/\0/\0x\0.\0o\0r\0g\0/\0\n\0T\0"s;
    copied({{"text/x-moz-url", address}});
    EXPECT_EQ(capturedText(), "https://x.org/");
    copied({{"text/uri-list", "https://y.org/\r\n"}});
    EXPECT_EQ(capturedText(), "https://y.org/");
    EXPECT_EQ(capture()->kind, core::ClipboardKind::text);
}

TEST_F(X11PasteboardTest, SeveralFilesAreSeveralItems) {
    copied({{"text/uri-list", "# comment\r\nfile:///tmp/a%20b\r\nfile:///tmp/c\r\n"}, {"UTF8_STRING", "/tmp/a b"}});
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->kind, core::ClipboardKind::files);
    EXPECT_EQ(*entry->text, "a b\nc");
    copied({{"x-special/gnome-copied-files", "cut\nfile:///tmp/d"}});
    EXPECT_EQ(capturedText(), "d");
}

TEST_F(X11PasteboardTest, MoreThanAHundredFilesAreRefused) {
    std::string list;
    for (int i = 0; i < 100; ++i) {
        list += "file:///" + std::to_string(i) + "\n";
    }
    copied({{"text/uri-list", list}});
    ASSERT_TRUE(capture());
    EXPECT_EQ(capture()->items->size(), 100U);
    copied({{"text/uri-list", list + "file:///x\n"}});
    EXPECT_FALSE(capture());
}

TEST_F(X11PasteboardTest, ReadsAnImageWholeOrInIncrements) {
    const auto png = noise(15 * mega);
    copied({{"image/png", png}}, Manner::parts);
    ASSERT_TRUE(capture());
    EXPECT_EQ(capture()->byteCount(), png.size());
    EXPECT_EQ(capturedBytes(), png);
    copied({{"image/png", png.substr(0, 2 * mega)}});
    EXPECT_EQ(capturedBytes(), png.substr(0, 2 * mega));
}

TEST_F(X11PasteboardTest, IncrementalContentsTakeNoMoreMemoryThanNeeded) {
    copied({{"image/png", noise(mega / 2)}}, Manner::parts);
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_LE(entry->items->front().front().data->capacity(), mega);
}

TEST_F(X11PasteboardTest, AnImageOfTwentyFiveMegabytesIsRefusedHoweverItComes) {
    const auto png = noise(25 * mega);
    copied({{"image/png", png}}, Manner::parts);
    EXPECT_FALSE(capture());
    EXPECT_THAT(pasteboard_.itemTypes(), IsEmpty());
    peer_.announceSize(25 * mega);
    copied({{"image/png", png}}, Manner::parts);
    EXPECT_FALSE(capture());
}

TEST_F(X11PasteboardTest, FlavoursThatTogetherAreTooLargeAreRefused) {
    copied({{"image/jpeg", noise(11 * mega)}, {"image/tiff", noise(11 * mega)}}, Manner::parts);
    EXPECT_FALSE(capture());
}

TEST_F(X11PasteboardTest, PictureThatIsOfferedAsPngIsReadAsNothingElse) {
    const auto png = noise(11 * mega);
    copied({{"image/png", png}, {"image/tiff", noise(11 * mega)}, {"image/jpeg", "JPEG"}}, Manner::parts);
    EXPECT_THAT(peer_.asked(), ElementsAre("TARGETS", "image/png"));
    const auto entry = capture();
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->items->front().size(), 1U);
    EXPECT_EQ(textOf(*entry->items->front().front().data), png);
}

TEST_F(X11PasteboardTest, AConcealedCopyIsNeverFetched) {
    copied({{"UTF8_STRING", "password"}, {"x-kde-passwordManagerHint", "secret"}});
    EXPECT_FALSE(capture());
    EXPECT_THAT(peer_.asked(), ElementsAre("TARGETS"));
    copied({{"UTF8_STRING", "passing"}, {"org.nspasteboard.TransientType", ""}});
    EXPECT_FALSE(capture());
    EXPECT_THAT(peer_.asked(), ElementsAre("TARGETS", "TARGETS"));
}

TEST_F(X11PasteboardTest, AKindThatIsOffIsNeverFetched) {
    options_.saveImages = false;
    copied({{"UTF8_STRING", "caption"}, {"image/png", "PNG"}});
    EXPECT_FALSE(capture());
    EXPECT_THAT(peer_.asked(), ElementsAre("TARGETS"));
}

TEST_F(X11PasteboardTest, WithoutInterestNothingIsAsked) {
    pasteboard_.setInterest(nullptr);
    const auto before = pasteboard_.changeCount();
    peer_.own({{"UTF8_STRING", "x"}});
    ASSERT_TRUE(waitUntil([&] { return pasteboard_.changeCount() > before; }));
    follow(); // comes too late for this copy
    EXPECT_THAT(peer_.asked(), IsEmpty());
    copied({{"UTF8_STRING", "y"}});
    EXPECT_EQ(capturedText(), "y");
    EXPECT_EQ(pasteboard_.changeCount(), before + 2);
}

TEST_F(X11PasteboardTest, CopyIsAnnouncedWhenItIsMadeAndWhenItCanBeRead) {
    std::vector<std::string> read;
    const auto notices = pasteboard_.onChanged(
        [&] { read.push_back(pasteboard_.string(core::pasteboardTypes::string).value_or("(nothing)")); });
    copied({{"UTF8_STRING", "text"}});
    EXPECT_THAT(read, ElementsAre("(nothing)", "text"));
    copied({{"application/unknown", "x"}});
    EXPECT_THAT(read, ElementsAre("(nothing)", "text", "(nothing)", "(nothing)"));
    pasteboard_.setInterest(nullptr);
    peer_.own({{"UTF8_STRING", "of no interest"}}, Manner::whole);
    EXPECT_TRUE(waitUntil([&] { return read.size() == 5; }));
    EXPECT_EQ(read.back(), "(nothing)");
}

TEST_F(X11PasteboardTest, CountMovesWhenTheCopyIsMadeHoweverLateItsContentsArrive) {
    const auto before = pasteboard_.changeCount();
    peer_.own({{"UTF8_STRING", "late"}}, Manner::late);
    ASSERT_TRUE(waitUntil([&] { return !peer_.asked().empty(); }));
    EXPECT_EQ(notices_, 1);
    EXPECT_EQ(pasteboard_.changeCount(), before + 1);
    peer_.answerNow();
    ASSERT_TRUE(waitUntil([&] { return notices_ == 2; }));
    EXPECT_EQ(capturedText(), "late");
    EXPECT_EQ(pasteboard_.changeCount(), before + 1);
}

TEST_F(X11PasteboardTest, CopyIsAnnouncedOnceTheApplicationInFrontIsKnown) {
    std::vector<std::function<void(PasteboardSource)>> waiting;
    X11Pasteboard pasteboard(*connection_, generousLimits,
                             [&](xcb_timestamp_t /*time*/, std::function<void(PasteboardSource)> callback) {
                                 waiting.push_back(std::move(callback));
                             });
    int notices = 0;
    const auto counting = pasteboard.onChanged([&] { ++notices; });
    const auto before = pasteboard.changeCount();
    peer_.own({{"UTF8_STRING", "first"}});
    ASSERT_TRUE(waitUntil([&] { return waiting.size() == 1; }));
    peer_.own({{"UTF8_STRING", "second"}});
    ASSERT_TRUE(waitUntil([&] { return waiting.size() == 2; }));
    EXPECT_EQ(pasteboard.changeCount(), before);
    waiting[0]({.application = RunningApplication{1, "First", "First"}}); // the copy has been replaced
    EXPECT_EQ(notices, 0);
    waiting[1]({.application = RunningApplication{2, "Second", "Second"}});
    EXPECT_EQ(notices, 1);
    EXPECT_EQ(pasteboard.source()->application->bundleID, "Second");
    EXPECT_EQ(pasteboard.changeCount(), before + 1);
}

TEST_F(X11PasteboardTest, CopyThatIsReplacedBeforeItIsAnnouncedNeverIs) {
    std::vector<std::function<void(PasteboardSource)>> waiting;
    X11Pasteboard pasteboard(*connection_, generousLimits,
                             [&](xcb_timestamp_t /*time*/, std::function<void(PasteboardSource)> callback) {
                                 waiting.push_back(std::move(callback));
                             });
    peer_.own({{"UTF8_STRING", "theirs"}});
    ASSERT_TRUE(waitUntil([&] { return waiting.size() == 1; }));
    pasteboard.clear();
    const auto cleared = pasteboard.changeCount();
    waiting[0]({});
    EXPECT_EQ(pasteboard.changeCount(), cleared);
}

TEST_F(X11PasteboardTest, CopyThatANoticeReplacesIsNotFetched) {
    const auto replacing = pasteboard_.onChanged([&] {
        if (notices_ == 1) {
            pasteboard_.clear();
            EXPECT_TRUE(pasteboard_.setString(core::pasteboardTypes::string, "ours"));
        }
    });
    peer_.own({{"UTF8_STRING", "theirs"}});
    ASSERT_TRUE(waitUntil([&] { return !peer_.isOwner(); }));
    settle();
    EXPECT_EQ(pasteboard_.string(core::pasteboardTypes::string), "ours");
    EXPECT_THAT(peer_.asked(), IsEmpty());
}

TEST_F(X11PasteboardTest, ReadsTheSourceMarker) {
    copied({{"UTF8_STRING", "x"}, {"org.nspasteboard.source", "com.example.marked"}});
    ASSERT_TRUE(capture());
    EXPECT_EQ(capture()->source, "com.example.marked");
}

TEST_F(UnresponsiveProgramTest, AnOwnerThatDoesNotAnswerIsGivenUp) {
    for (const auto manner : {Manner::silent, Manner::stalling, Manner::endless, Manner::lying}) {
        copied({{"UTF8_STRING", std::string(200'000, 'x')}}, manner);
        EXPECT_FALSE(capture());
    }
    expectNextCopyIsRead();
}

TEST_F(UnresponsiveProgramTest, AnOwnerThatVanishesLeavesNothing) {
    const auto before = pasteboard_.changeCount();
    {
        SelectionPeer shortLived(server_.display());
        shortLived.own({{"UTF8_STRING", "x"}}, Manner::silent);
        ASSERT_TRUE(waitUntil([&] { return !shortLived.asked().empty() || pasteboard_.changeCount() > before; }));
    }
    ASSERT_TRUE(waitUntil([&] { return pasteboard_.changeCount() >= before + 2; }));
    EXPECT_THAT(pasteboard_.itemTypes(), IsEmpty());
    expectNextCopyIsRead();
}

TEST_F(X11PasteboardTest, ACopyDuringAFetchTakesItsPlace) {
    const auto before = pasteboard_.changeCount();
    peer_.own({{"UTF8_STRING", "slow"}}, Manner::silent);
    ASSERT_TRUE(waitUntil([&] { return pasteboard_.changeCount() > before; }));
    SelectionPeer other(server_.display());
    other.own({{"UTF8_STRING", "quick"}});
    ASSERT_TRUE(waitUntil([&] { return !pasteboard_.itemTypes().empty(); }));
    EXPECT_EQ(capturedText(), "quick");
    EXPECT_EQ(pasteboard_.changeCount(), before + 2);
}

TEST_F(X11PasteboardTest, ALostConnectionEmptiesItAndTheNextCopyIsSeen) {
    copied({{"UTF8_STRING", "x"}});
    const auto before = pasteboard_.changeCount();
    const auto window = xcb_generate_id(connection_->raw());
    xcb_create_window(connection_->raw(), 0, window, connection_->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    connection_->flush();
    ASSERT_TRUE(waitUntil([&] {
        xcb_kill_client(peer_.connection().raw(), window);
        peer_.connection().flush();
        return connection_->isLost();
    }));
    EXPECT_GT(pasteboard_.changeCount(), before);
    EXPECT_THAT(pasteboard_.itemTypes(), IsEmpty());
    EXPECT_FALSE(pasteboard_.setString(core::pasteboardTypes::string, "x"));
    ASSERT_TRUE(waitUntil([&] { return !connection_->isLost(); }));
    settle();
    copied({{"UTF8_STRING", "again"}});
    EXPECT_EQ(capturedText(), "again");
}

// Writing

TEST_F(X11PasteboardTest, RestoredTextIsServedInEveryForm) {
    restored(entryOf(core::ClipboardKind::text, {{{"public.utf8-plain-text", bytesOf("naïve")},
                                                  {"public.html", bytesOf("<i>naïve</i>")},
                                                  {"public.rtf", bytesOf("{\\rtf1}")},
                                                  {"public.url", bytesOf("https://x.org")}}}));
    EXPECT_EQ(pastedText("UTF8_STRING"), "naïve");
    EXPECT_EQ(pastedText("text/plain;charset=utf-8"), "naïve");
    EXPECT_EQ(pastedText("STRING"), "na\xefve");
    EXPECT_EQ(pastedText("text/html"), "<i>naïve</i>");
    EXPECT_EQ(pastedText("text/rtf"), "{\\rtf1}");
    EXPECT_TRUE(pastedText("text/x-moz-url").starts_with(std::string_view("h\0t\0", 4)));
    EXPECT_EQ(pastedText("org.nspasteboard.source"), "com.example.first");
    EXPECT_EQ(pastedText("image/png"), "(failed)");
}

TEST_F(X11PasteboardTest, TextBeyondLatin1IsNotServedInIt) {
    restored(entryOf(core::ClipboardKind::text, {{{"public.utf8-plain-text", bytesOf("שלום")}}}));
    EXPECT_EQ(pastedText("STRING"), "(failed)");
    EXPECT_EQ(pastedText("UTF8_STRING"), "שלום");
}

TEST_F(X11PasteboardTest, ReportsItsTargetsAndTheTimeOfOwnership) {
    restored(entryOf(core::ClipboardKind::image, {{{"public.png", bytesOf("PNG")}}}));
    const auto targets = paste("TARGETS");
    std::vector<xcb_atom_t> atoms(targets.bytes.size() / 4);
    std::memcpy(atoms.data(), targets.bytes.data(), targets.bytes.size());
    for (const auto* name : {"TARGETS", "TIMESTAMP", "MULTIPLE", "image/png", "org.nspasteboard.source"}) {
        EXPECT_NE(std::ranges::find(atoms, peer_.atom(name)), atoms.end()) << name;
    }
    EXPECT_EQ(atoms.size(), 5U);
    const auto time = paste("TIMESTAMP");
    ASSERT_EQ(time.bytes.size(), 4U);
    EXPECT_NE(time.bytes, std::vector<std::byte>(4));
}

TEST_F(X11PasteboardTest, ServesALargeImageInIncrementsToSeveralProgramsAtOnce) {
    const auto png = noise(15 * mega);
    restored(entryOf(core::ClipboardKind::image, {{{"public.png", bytesOf(png)}}}));
    SelectionPeer other(server_.display());
    X11SelectionReader reader(other.connection(), other.atom("CLIPBOARD"), generousLimits.reading);
    std::optional<X11SelectionReader::Contents> second;
    reader.request(other.atom("image/png"), XCB_CURRENT_TIME, 100 * mega,
                   [&](auto contents) { second = std::move(contents); });
    EXPECT_EQ(pastedText("image/png"), png);
    ASSERT_TRUE(waitUntil([&] { return second.has_value(); }));
    EXPECT_EQ(textOf(second->bytes), png);
}

TEST_F(UnresponsiveProgramTest, AProgramThatStopsReadingIsForgottenAndOthersAreServed) {
    const auto png = noise(2 * mega);
    restored(entryOf(core::ClipboardKind::image, {{{"public.png", bytesOf(png)}}}));
    // Requests and then stops reading: the events of this window are ignored.
    auto* c = peer_.connection().raw();
    const auto window = xcb_generate_id(c);
    xcb_create_window(c, 0, window, peer_.connection().root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    for (int i = 0; i < 200; ++i) {
        const auto property = peer_.atom("P" + std::to_string(i));
        xcb_convert_selection(c, window, peer_.atom("CLIPBOARD"), peer_.atom("image/png"), property, XCB_CURRENT_TIME);
    }
    peer_.connection().flush();
    ASSERT_TRUE(waitUntil([&] { return pastedText("image/png") == png; }, std::chrono::seconds(20)));
}

TEST_F(X11PasteboardTest, RestoredFilesAreServedAsFileManagersExpect) {
    QTemporaryDir folder;
    const auto url = "file://" + folder.path().toStdString();
    restored(entryOf(core::ClipboardKind::files,
                     {{{"public.file-url", bytesOf(url)}}, {{"public.file-url", bytesOf(url + "/")}}}));
    EXPECT_EQ(pastedText("text/uri-list"), url + "\r\n" + url + "/\r\n");
    EXPECT_EQ(pastedText("x-special/gnome-copied-files"), "copy\n" + url + "\n" + url + "/");
}

TEST_F(X11PasteboardTest, KeepsServingUntilAnotherProgramCopies) {
    restored(entryOf(core::ClipboardKind::text, {{{"public.utf8-plain-text", bytesOf("ours")}}}));
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(pastedText("UTF8_STRING"), "ours");
    }
    copied({{"UTF8_STRING", "theirs"}});
    EXPECT_EQ(pastedText("UTF8_STRING"), "theirs");
    EXPECT_EQ(capturedText(), "theirs");
}

TEST_F(X11PasteboardTest, ARestoreIsNotSeenAsACopy) {
    copied({{"UTF8_STRING", "theirs"}});
    restored(entryOf(core::ClipboardKind::text, {{{"public.utf8-plain-text", bytesOf("ours")}}}));
    const auto count = pasteboard_.changeCount();
    EXPECT_EQ(pastedText("UTF8_STRING"), "ours");
    EXPECT_EQ(pasteboard_.changeCount(), count);
    EXPECT_EQ(capture()->source, "com.example.first");
}

TEST_F(X11PasteboardTest, ACopyThatCrossesARestoreLosesToIt) {
    for (int i = 0; i < 50; ++i) {
        peer_.own({{"UTF8_STRING", "theirs"}});
        peer_.synchronize(); // the notice of it is still to be read here
        restored(entryOf(core::ClipboardKind::text, {{{"public.utf8-plain-text", bytesOf("ours")}}}));
        EXPECT_EQ(pastedText("UTF8_STRING"), "ours");
        EXPECT_EQ(pasteboard_.string(core::pasteboardTypes::string), "ours");
    }
}

TEST_F(X11PasteboardTest, OwnWindowThatAnotherClientDestroysIsMadeAgain) {
    restored(entryOf(core::ClipboardKind::text, {{{std::string(core::pasteboardTypes::string), bytesOf("first")}}}));
    ASSERT_EQ(pastedText("UTF8_STRING"), "first");
    const auto destroyed = ownerOfClipboard();
    xcb_destroy_window(peer_.connection().raw(), destroyed);
    peer_.synchronize();
    ASSERT_TRUE(waitUntil([&] { return ownerOfClipboard() == XCB_WINDOW_NONE && pasteboard_.itemTypes().empty(); }));
    restored(entryOf(core::ClipboardKind::text, {{{std::string(core::pasteboardTypes::string), bytesOf("second")}}}));
    EXPECT_EQ(pastedText("UTF8_STRING"), "second");
    copied({{"UTF8_STRING", "third"}}); // other owners are still noticed
    EXPECT_EQ(capturedText(), "third");
}

TEST_F(X11PasteboardTest, RestoreThatMeetsADestroyedWindowIsServedFromTheNextOne) {
    restored(entryOf(core::ClipboardKind::text, {{{std::string(core::pasteboardTypes::string), bytesOf("first")}}}));
    xcb_destroy_window(peer_.connection().raw(), ownerOfClipboard());
    peer_.synchronize(); // and this program does not know yet
    restored(entryOf(core::ClipboardKind::text, {{{std::string(core::pasteboardTypes::string), bytesOf("second")}}}));
    EXPECT_EQ(pastedText("UTF8_STRING"), "second");
    copied({{"UTF8_STRING", "third"}});
    EXPECT_EQ(capturedText(), "third");
}

TEST_F(X11PasteboardTest, DataInUnitsOfMoreThanAByteIsNoText) {
    peer_.answerInFormat(32);
    copied({{"UTF8_STRING", "four"}});
    EXPECT_FALSE(capture());
}

TEST_F(X11PasteboardTest, ListOfTargetsThatIsNoListOfAtomsIsNotRead) {
    peer_.answerTargetsAs("UTF8_STRING");
    copied({{"UTF8_STRING", "text"}});
    EXPECT_FALSE(capture());
    EXPECT_THAT(peer_.asked(), Each("TARGETS"));
}

TEST_F(X11PasteboardTest, EventsThatAnotherClientForgesAreIgnored) {
    restored(entryOf(core::ClipboardKind::text, {{{std::string(core::pasteboardTypes::string), bytesOf("mine")}}}));
    const auto owner = ownerOfClipboard();
    xcb_destroy_notify_event_t forged{};
    forged.response_type = XCB_DESTROY_NOTIFY;
    forged.event = forged.window = owner;
    std::array<char, 32> bytes{};
    std::memcpy(bytes.data(), &forged, sizeof forged);
    xcb_send_event(peer_.connection().raw(), 0, owner, XCB_EVENT_MASK_NO_EVENT, bytes.data());
    peer_.synchronize();
    settle();
    EXPECT_EQ(pastedText("UTF8_STRING"), "mine");
    EXPECT_EQ(ownerOfClipboard(), owner);
}

TEST_F(X11PasteboardTest, ClipboardThatChangesHandsWithoutEndIsFollowedWithBoundedWork) {
    const auto before = notices_;
    constexpr int takeovers = 20'000;
    for (int i = 0; i < takeovers; ++i) {
        peer_.own({{"UTF8_STRING", "last"}});
    }
    peer_.synchronize();
    EXPECT_TRUE(waitUntil([&] { return capturedText() == "last"; }));
    EXPECT_LT(notices_ - before, takeovers);
}

TEST_F(X11PasteboardTest, AnswersSeveralTargetsAtOnce) {
    restored(entryOf(core::ClipboardKind::text, {{{"public.utf8-plain-text", bytesOf("text")}}}));
    auto* c = peer_.connection().raw();
    const auto window = xcb_generate_id(c);
    xcb_create_window(c, 0, window, peer_.connection().root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    const std::array pairs{peer_.atom("UTF8_STRING"), peer_.atom("A"), peer_.atom("image/png"), peer_.atom("B")};
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, peer_.atom("P"), peer_.atom("ATOM_PAIR"), 32, 4,
                        pairs.data());
    xcb_convert_selection(c, window, peer_.atom("CLIPBOARD"), peer_.atom("MULTIPLE"), peer_.atom("P"),
                          XCB_CURRENT_TIME);
    std::vector<xcb_atom_t> result;
    ASSERT_TRUE(waitUntil([&] {
        const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            c, xcb_get_property(c, 0, window, peer_.atom("P"), XCB_GET_PROPERTY_TYPE_ANY, 0, 8), nullptr));
        const auto* value = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
        result.assign(value, value + reply->value_len);
        return result.back() == XCB_ATOM_NONE;
    }));
    EXPECT_THAT(result, ElementsAre(pairs[0], pairs[1], pairs[2], XCB_ATOM_NONE));
    const XReply<xcb_get_property_reply_t> text(xcb_get_property_reply(
        c, xcb_get_property(c, 0, window, peer_.atom("A"), XCB_GET_PROPERTY_TYPE_ANY, 0, 8), nullptr));
    EXPECT_EQ(std::string(static_cast<const char*>(xcb_get_property_value(text.get())), text->value_len), "text");
}

} // namespace
} // namespace quillane
