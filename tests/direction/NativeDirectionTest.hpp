// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/UserInput.hpp"
#include "direction/BrowserWaking.hpp"
#include "direction/DirectionTest.hpp"
#include "direction/NativeDirectionAdapter.hpp"

namespace quillane::testing {

/// An editor in each application, with a context menu that opens as the tests say.
class NativeDirectionTest : public DirectionTest {
protected:
    NativeDirectionTest() : adapter(services(), report()) {}

    /// A text field of a web page that has the focus.
    void openChrome(std::string_view bundleID = "com.google.Chrome",
                    const std::string& menuTitle = "Writing Direction") {
        openApplication(bundleID);
        BrowserWaker(desktop.accessibility, desktop.workspace).wake(); // as the delegate does
        desktop.accessibility.forgetCalls();
        page = &window->add("AXWebArea");
        useEditor(page->add("AXTextArea").with("AXEnabled", true).settable("AXValue"), menuTitle);
    }

    void useEditor(FakeElement& element, const std::string& menuTitle) {
        editor = &element;
        editor->with("AXSelectedTextRange", AXTextRange{4, 2}).settable("AXSelectedTextRange");
        editor->with("AXWindow", *window);
        editor->withAction("AXShowMenu", [this] {
            onShowMenu();
            return showMenuResult;
        });
        focus(*editor);
        menu = &tree().add("AXMenu").present(false).withAction("AXCancel");
        item = &menu->add("AXMenuItem").with("AXTitle", " " + menuTitle + "\n");
        submenu = &item->add("AXMenu");
        for (const auto* title : {"Default", "Left to Right", "Right to Left"}) {
            commands.push_back(&submenu->add("AXMenuItem").with("AXTitle", std::string(title)).withAction("AXPress"));
        }
    }

    void openMenu() { menu->present(); }

    void apply(WritingDirection direction = WritingDirection::rightToLeft,
               const SupportedApplication& application = applications::chrome) {
        adapter.apply(direction, application);
    }

    void expectNoPress() {
        for (const auto* command : commands) {
            EXPECT_EQ(countOf(*command, "AXPress"), 0);
        }
    }

    void expectNotApplied() {
        expectNoPress();
        EXPECT_FALSE(desktop.accessibility.isObserved(pid, "AXMenuOpened"));
    }

    /// The attempt is over: the next one starts from the beginning.
    void expectNextAttemptWorks() {
        said.clear();
        menu->present(false);
        onShowMenu = [this] { openMenu(); };
        showMenuResult = AXActionResult::done;
        focus(*editor);
        editor->with("AXSelectedTextRange", AXTextRange{4, 2});
        apply();
        desktop.queue.advance(60ms);
        EXPECT_THAT(said, ElementsAre("Applied RTL in Chrome"));
    }

    NativeDirectionAdapter adapter;
    FakeElement* page = nullptr;
    FakeElement* editor = nullptr;
    FakeElement* menu = nullptr;
    FakeElement* item = nullptr;
    FakeElement* submenu = nullptr;
    std::vector<FakeElement*> commands;
    std::function<void()> onShowMenu = [this] { openMenu(); };
    AXActionResult showMenuResult = AXActionResult::done;
};

} // namespace quillane::testing
