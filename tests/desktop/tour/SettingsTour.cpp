// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/tour/SettingsTour.hpp"

#include "core/localization/Texts.hpp"
#include "core/settings/SettingsPage.hpp"
#include "desktop/agent/LiveMenu.hpp"
#include "desktop/fixture/MockServices.hpp"

#include <algorithm>

namespace quillane::live {

namespace {

constexpr auto sessionManager = "org.gnome.SessionManager";
constexpr std::size_t keepAwakeRow = 6; ///< of the status menu

class SettingsTour {
public:
    SettingsTour(Tour& tour, LiveDesktop& desktop) : tour_(tour), desktop_(desktop) {}

    void walk() {
        tour_.step("Keep Awake on", [&] {
            start();
            return toggleKeepAwake(true);
        });
        tour_.step("Keep Awake off", [&] { return toggleKeepAwake(false); });
        for (const auto language : core::allLanguages) {
            for (const auto page : core::allSettingsPages) {
                const auto name = "settings in " + std::string(core::languageID(language)) + ' ' +
                                  core::title(page).rendered(core::AppLanguage::english);
                tour_.step(name, [&] {
                    choose(language);
                    return show(page, language);
                });
            }
        }
        tour_.step("text box", [&] { return typeInTextBox(); });
        tour_.step("text box Control with right Shift", [&] { return turnTextBox(Key::rightShift, true); });
        tour_.step("text box Control with left Shift", [&] { return turnTextBox(Key::leftShift, false); });
        mustSee(agent_->process().end() == ExitStatus{0, 0}, "the agent's orderly end");
    }

private:
    void start() {
        login_ = got(startLoginManager(desktop_));
        manager_ = got(startInhibitionService(desktop_, sessionManager));
        mustSee(chooseAgentLanguage(desktop_, "en"), "the language in the settings");
        agent_ = got(LiveAgent::start(desktop_, true, withSystemBus(desktop_)));
    }

    std::string toggleKeepAwake(bool on) {
        auto menu = got(LiveMenu::open(desktop_));
        const auto rows = menu.rows();
        mustSee(rows.size() > keepAwakeRow && menu.choose(rows[keepAwakeRow].title), "the row of Keep Awake");
        std::string machine;
        std::string display;
        const auto isSeen = [&] {
            machine = loginInhibitors(desktop_);
            display = sessionInhibitors(desktop_, sessionManager);
            return (machine.find("Quillane Keep Awake") != std::string::npos) == on && display.empty() != on;
        };
        mustSee(waitUntil(isSeen), [&] { return "the inhibitors, but: " + machine + " and " + display; });
        return on ? "the login manager lists \"Quillane Keep Awake\", and the session manager \"" +
                        display.substr(0, display.find('\n')) + "\""
                  : "neither the login manager nor the session manager lists it any more";
    }

    /// With the keys alone: the list of languages comes first in the window, and arrow keys go from one to the next.
    void choose(core::AppLanguage language) {
        if (!chosen_) {
            mustSee(desktop_.run({agentExecutable()}).succeeded(), "an answer to quillane");
            mustSee(desktop_.waitUntilInFront(agent_->process().pid()), "the settings in front");
            mustSee(waitUntil([&] { return title() == settingsTitle(core::AppLanguage::english); }), "its title");
            desktop_.keyboard().tap(Key::tab);
            chosen_ = core::AppLanguage::english;
        }
        for (auto steps = static_cast<int>(language) - static_cast<int>(*chosen_); steps != 0;
             steps -= steps > 0 ? 1 : -1) {
            desktop_.keyboard().tap(steps > 0 ? Key::down : Key::up);
        }
        chosen_ = language;
        mustSee(waitUntil([&] { return title() == settingsTitle(language); }),
                [&] { return "its title, but: " + title(); });
    }

    std::string show(core::SettingsPage page, core::AppLanguage language) {
        const auto name = core::title(page).rendered(language);
        const auto tab = find([&](const AccessibleNode& node) { return node.role == "page tab" && node.name == name; });
        mustSee(tab && desktop_.accessibility().activate(*tab), "the tab \"" + name + "\"");
        const auto isSelected = [&] {
            const auto now = desktop_.accessibility().refreshed(*tab);
            return now && now->is(AccessibleNode::State::selected);
        };
        mustSee(waitUntil(isSelected), "the tab selected");
        std::size_t texts = 0;
        static_cast<void>(find([&](const AccessibleNode& node) {
            texts += node.role == "label" && !node.name.empty() && node.is(AccessibleNode::State::showing) ? 1 : 0;
            return false;
        }));
        mustSee(texts >= 5, "the texts of the page");
        return "the tab \"" + name + "\" is selected, " + std::to_string(texts) + " texts are shown";
    }

    std::string typeInTextBox() {
        choose(core::AppLanguage::english);
        static_cast<void>(show(core::SettingsPage::testing, core::AppLanguage::english));
        for (int control = 0; control < 30 && !textBox(); ++control) {
            desktop_.keyboard().tap(Key::tab);
            static_cast<void>(waitUntil([&] { return textBox().has_value(); }, std::chrono::milliseconds{100}));
        }
        mustSee(textBox().has_value(), "a text box with the keys");
        mustSee(agent_->useGroup(0, false), "the English layout");
        desktop_.keyboard().type("quillane");
        std::string last;
        const auto isTyped = [&] {
            last = desktop_.editorText(agent_->process().pid()).value_or("(none)");
            return last == "quillane";
        };
        mustSee(waitUntil(isTyped), [&] { return "the text in the box, but: " + last; });
        left_ = firstCharacter();
        return "the box has the keys and holds \"" + last + "\", which begins at pixel " + std::to_string(left_);
    }

    /// The paragraph begins at the left edge of its text, or goes to the right.
    std::string turnTextBox(Key shift, bool toTheRight) {
        desktop_.keyboard().chord({Key::leftControl, shift});
        int now = -1;
        const auto isTurned = [&] {
            now = firstCharacter();
            return toTheRight ? now > left_ + 200 : now == left_;
        };
        mustSee(waitUntil(isTurned),
                [&] { return "the text at the other side, but it begins at pixel " + std::to_string(now); });
        return "the text begins at pixel " + std::to_string(now);
    }

    [[nodiscard]] std::optional<AccessibleNode> textBox() {
        return desktop_.accessibility().focusedEditor(agent_->process().pid());
    }

    /// Where the first character of the text box stands on the screen.
    [[nodiscard]] int firstCharacter() {
        const auto box = textBox();
        return box ? desktop_.accessibility().characterLeft(*box, 0).value_or(-1) : -1;
    }

    [[nodiscard]] std::optional<AccessibleNode> find(const AccessibleTree::Predicate& matches) {
        const auto root = desktop_.accessibility().application(agent_->process().pid());
        return root ? desktop_.accessibility().find(*root, matches) : std::nullopt;
    }

    [[nodiscard]] static std::string settingsTitle(core::AppLanguage language) {
        return core::texts::settingsWindowTitle.rendered(language);
    }

    [[nodiscard]] std::string title() const {
        const auto active = desktop_.screen().activeWindow();
        return active ? desktop_.screen().text(*active, "_NET_WM_NAME") : std::string();
    }

    Tour& tour_;
    LiveDesktop& desktop_;
    std::optional<ChildProcess> login_;
    std::optional<ChildProcess> manager_;
    std::optional<LiveAgent> agent_;
    std::optional<core::AppLanguage> chosen_;
    int left_ = -1; ///< of the text in the text box
};

} // namespace

void settingsTour(Tour& tour, LiveDesktop& desktop) {
    SettingsTour(tour, desktop).walk();
}

} // namespace quillane::live
