// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/tour/HistoryTour.hpp"

#include "desktop/agent/HistoryDesktop.hpp"
#include "desktop/fixture/FocusWatcher.hpp"

namespace quillane::live {

namespace {

class HistoryTour {
public:
    HistoryTour(Tour& tour, LiveDesktop& desktop) : tour_(tour), desktop_(desktop) {}

    void walk() {
        tour_.step("copy three texts", [&] { return copy(); });
        tour_.step("open the history", [&] { return open(); });
        tour_.step("search the history", [&] { return search(); });
        tour_.step("paste from the history", [&] { return paste(); });
        mustSee(agent_->process().end() == ExitStatus{0, 0}, "the agent's orderly end");
    }

private:
    std::string copy() {
        keyring_ = got(startKeyring(desktop_));
        core::ClipboardOptions options;
        options.enabled = true;
        mustSee(writeHistorySettings(desktop_, options), "the history turned on");
        agent_ = got(LiveAgent::start(desktop_));
        mustSee(agent_->waitForStatus([](const auto& status) {
            return status.at("clipboard").at("status") == "Clipboard history is active";
        }),
                "the history active");
        int count = 0;
        for (const auto* text : {hebrew, "A line in English", "سطر بالعربية"}) {
            mustSee(desktop_.run({"sh", "-c", "printf %s \"$0\" | xclip -selection clipboard -i", text}).succeeded(),
                    "a copy");
            ++count;
            mustSee(agent_->waitForStatus(
                        [&](const auto& status) { return status.at("clipboard").at("entries") == count; }),
                    "the copy in the history");
        }
        return "the history holds " + std::to_string(count) + " entries, in Hebrew, English and Arabic";
    }

    std::string open() {
        editor_ = got(desktop_.startApplication({"mousepad", "--disable-server"}));
        mustSee(waitUntil([&] { return desktop_.editorText(editor_->pid()) == ""; }), "an empty editor");
        FocusWatcher focus(desktop_.accessibility());
        desktop_.keyboard().tapWith({Key::leftSuper, Key::leftShift}, Key::v);
        mustSee(isOpen(true), "the panel");
        const auto agent = desktop_.accessibility().application(agent_->process().pid());
        mustSee(agent && focus.next(defaultTimeout, agent->bus), "the panel with the keys");
        mustSee(desktop_.waitUntilInFront(editor_->pid()), "the editor still in front");
        return "Super with Shift and V opens the panel over the editor, which stays in front";
    }

    std::string search() {
        mustSee(agent_->useGroup(1, true), "the Hebrew layout");
        desktop_.keyboard().type("akuo");
        mustSee(holdsFor(std::chrono::milliseconds{400}, [&] { return isOpen(true); }), "the panel open");
        return "שלום finds the line in Hebrew";
    }

    std::string paste() {
        desktop_.keyboard().tap(Key::enter);
        std::string last;
        mustSee(waitUntil([&] {
                    last = desktop_.editorText(editor_->pid()).value_or("");
                    return last == hebrew;
                }),
                "the line in the editor, but: " + last);
        mustSee(isOpen(false), "the panel closed");
        return "Return has pasted \"" + last + "\" into the editor";
    }

    [[nodiscard]] bool isOpen(bool expected) {
        return agent_->waitForStatus(
            [&](const auto& status) { return status.at("clipboard").at("panelOpen") == expected; });
    }

    static constexpr const char* hebrew = "שלום, מה שלומך?";

    Tour& tour_;
    LiveDesktop& desktop_;
    std::optional<ChildProcess> keyring_;
    std::optional<LiveAgent> agent_;
    std::optional<ChildProcess> editor_;
};

} // namespace

void historyTour(Tour& tour, LiveDesktop& desktop) {
    HistoryTour(tour, desktop).walk();
}

} // namespace quillane::live
