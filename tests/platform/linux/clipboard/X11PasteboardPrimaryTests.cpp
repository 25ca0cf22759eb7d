// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/clipboard/X11PasteboardTest.hpp"
#include "platform/linux/clipboard/X11PrimarySelection.hpp"

namespace quillane {

namespace {

class X11PrimarySelectionTest : public X11PasteboardTest {
protected:
    void write(const std::string& text) {
        pasteboard_.clear();
        ASSERT_TRUE(pasteboard_.setString(core::pasteboardTypes::string, text));
    }

    /// Like a program in which the user selects a text.
    void selectElsewhere() {
        auto* c = peer_.connection().raw();
        const auto window = xcb_generate_id(c);
        xcb_create_window(c, 0, window, peer_.connection().root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(c, window, XCB_ATOM_PRIMARY, XCB_CURRENT_TIME);
        peer_.synchronize();
    }

    X11PrimarySelection selection_{*connection_, pasteboard_};
};

TEST_F(X11PrimarySelectionTest, ThePasteboardsTextIsTheSelectedOneOnceItSaysSo) {
    selectElsewhere();
    write("from the history");
    EXPECT_FALSE(selection_.offer()) << "the server has not confirmed it yet";
    ASSERT_TRUE(waitUntil([&] { return selection_.offer(); }));
    EXPECT_EQ(pastedText("UTF8_STRING", "PRIMARY"), "from the history");
    EXPECT_EQ(pastedText("UTF8_STRING"), "from the history");
}

TEST_F(X11PrimarySelectionTest, AnotherTextIsOfferedAgain) {
    write("first");
    ASSERT_TRUE(waitUntil([&] { return selection_.offer(); }));
    write("second");
    EXPECT_FALSE(selection_.offer());
    ASSERT_TRUE(waitUntil([&] { return selection_.offer(); }));
    EXPECT_EQ(pastedText("UTF8_STRING", "PRIMARY"), "second");
}

TEST_F(X11PrimarySelectionTest, WhoSelectsSomethingTakesIt) {
    write("text");
    ASSERT_TRUE(waitUntil([&] { return selection_.offer(); }));
    selectElsewhere();
    EXPECT_TRUE(waitUntil([&] { return !selection_.offer(); }));
    ASSERT_TRUE(waitUntil([&] { return selection_.offer(); })) << "it is taken back when it is asked for";
}

TEST_F(X11PrimarySelectionTest, WithoutATextTheSelectionStaysWhereItIs) {
    write("text");
    pasteboard_.clear();
    EXPECT_FALSE(selection_.offer());
    settle();
    EXPECT_FALSE(selection_.offer());
    const XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        peer_.connection().raw(), xcb_get_selection_owner(peer_.connection().raw(), XCB_ATOM_PRIMARY), nullptr));
    ASSERT_TRUE(owner);
    EXPECT_EQ(owner->owner, xcb_window_t{XCB_WINDOW_NONE});
}

} // namespace

} // namespace quillane
