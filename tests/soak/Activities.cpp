// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "soak/Activities.hpp"

#include "core/localization/AppLanguage.hpp"
#include "core/localization/Texts.hpp"
#include "desktop/agent/LiveAreaSelection.hpp"
#include "desktop/fixture/LiveDesktopTest.hpp"

#include <algorithm>
#include <memory>
#include <thread>

namespace quillane::soak {
namespace {

using live::Key;
using live::require;
using live::waitUntil;
using namespace std::chrono_literals;

class User {
public:
    User(SoakDesktop& soak, std::mt19937& random) : soak_(soak), random_(random) {}

    void copy() { require(soak_.copies().copy(random_), "the program that copies does not answer"); }

    void copyStream() {
        for (int i = 0; i < 20; ++i) {
            copy();
        }
    }

    void copySecret() { require(soak_.copies().copySecret(), "the program that copies does not answer"); }

    /// As fast as a good typist, with Shift and chords in between, into whatever is in front.
    void type() {
        constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz";
        const auto& keyboard = desktop().keyboard();
        desktop().screen().lockGroup(static_cast<int>(random_() % 2));
        for (int word = 0; word < 8; ++word) {
            const bool hasShift = random_() % 2 == 0;
            const Key shift = random_() % 2 == 0 ? Key::leftShift : Key::rightShift;
            if (hasShift) {
                keyboard.press(shift);
            }
            for (int i = 0; i < 6; ++i) {
                keyboard.type(letters.substr(random_() % letters.size(), 1));
                std::this_thread::sleep_for(std::chrono::milliseconds(random_() % 25));
            }
            if (hasShift) {
                keyboard.release(shift);
            }
            if (random_() % 3 == 0) {
                chord();
            }
        }
    }

    void switchApplication() {
        const auto pids = soak_.editors();
        require(desktop().bringToFront(pids.at(random_() % pids.size())),
                "the other editor does not come to the front");
        type();
    }

    void upload() {
        const auto file = desktop().home() / "shared.bin";
        require(live::writeFile(file, std::string(1 + random_() % 2'000'000, 'x')), "no file to share");
        const auto finished = [&] {
            const auto log = soak_.server().accessLog();
            return std::ranges::count(log, '\n');
        };
        const auto before = finished();
        require(soak_.agent().command({"share", file}).succeeded(), "the file is not shared");
        require(waitUntil([&] { return finished() > before; }), "the server gets no file");
        closeWindowsOfAgent();
    }

    void changeLanguage() {
        showSettings();
        if (!isInTree()) {
            return closeWindowsOfAgent();
        }
        const auto index = [&] {
            const auto language = core::languageFromID(soak_.agent().status().value("language", ""));
            return language ? static_cast<int>(*language) : 0;
        };
        const int current = index();
        const int target =
            (current + 1 + static_cast<int>(random_() % 2)) % static_cast<int>(core::allLanguages.size());
        const auto list = control("combo box", {});
        require(list && desktop().accessibility().activate(*list), "no list of languages in the settings");
        require(waitUntil([&] { return !live::popUps(desktop().screen()).empty(); }), "the languages are not shown");
        for (int step = current; step != target; step += step < target ? 1 : -1) {
            desktop().keyboard().tap(step < target ? Key::down : Key::up);
        }
        desktop().keyboard().tap(Key::enter);
        require(waitUntil([&] { return index() == target; }), "the language stays");
        closeWindowsOfAgent();
    }

    void changeSetting() {
        showSettings();
        if (!isInTree()) {
            return closeWindowsOfAgent();
        }
        const auto isOn = [&] { return soak_.agent().status().at("options").at("shiftEnglish") == true; };
        for (const bool expected : {false, true}) {
            const auto found = control("check box", name());
            require(found && desktop().accessibility().activate(*found), "no switch in the settings");
            require(waitUntil([&] { return isOn() == expected; }), "the switch changes nothing");
        }
        closeWindowsOfAgent();
    }

    void openPanel() {
        static_cast<void>(soak_.editors());
        desktop().keyboard().tapWith({Key::leftSuper, Key::leftShift}, Key::v);
        require(isPanelOpen(true), "the panel does not open");
        desktop().keyboard().type("ab");
        require(leavePanelBy(Key::escape), "the panel does not close");
    }

    void paste() {
        require(desktop().bringToFront(soak_.editors().at(random_() % 2)), "no editor in front");
        require(soak_.copies().copyLine(), "the program that copies does not answer");
        desktop().keyboard().tapWith({Key::leftSuper, Key::leftShift}, Key::v);
        require(isPanelOpen(true), "the panel does not open");
        require(leavePanelBy(Key::enter), "the panel does not paste");
    }

    void capture() {
        const live::LiveAreaSelection selection(desktop());
        require(soak_.agent().command({"capture"}).succeeded(), "no selection");
        require(selection.waitUntilOpen(), "the selection does not open");
        selection.drag({200, 200, 40 + static_cast<int>(random_() % 200), 40});
        require(selection.waitUntilClosed(), "the selection stays");
    }

    void pause() {
        std::this_thread::sleep_for(Copies::streamPause); // the rhythm of a user: what was copied has been read
        for (const auto* word : {"pause", "resume"}) {
            require(soak_.agent().command({word}).succeeded(), "the agent does not pause");
        }
        require(soak_.agent().waitForStatus([](const auto& status) { return status.at("monitorRunning") == true; }),
                "the agent does not resume");
    }

private:
    [[nodiscard]] live::LiveDesktop& desktop() { return soak_.desktop(); }

    void chord() {
        const auto& keyboard = desktop().keyboard();
        switch (random_() % 3) {
        case 0:
            return keyboard.chord({Key::leftAlt, Key::leftShift});
        case 1:
            return keyboard.chord({Key::leftControl, Key::leftShift});
        default:
            return keyboard.chord({Key::leftControl, Key::rightShift});
        }
    }

    [[nodiscard]] pid_t agentPid() { return soak_.agent().process().pid(); }

    void showSettings() {
        require(soak_.agent().command({}).succeeded(), "the settings are not shown");
        require(desktop().waitUntilInFront(agentPid()), "the settings are not in front");
    }

    /// Its toolkit does not come to an accessibility bus that has taken the place of another.
    [[nodiscard]] bool isInTree() {
        return waitUntil([&] { return desktop().accessibility().application(agentPid()).has_value(); }, 2s);
    }

    [[nodiscard]] std::string name() {
        const auto language = core::languageFromID(soak_.agent().status().value("language", "en"));
        return core::texts::temporaryEnglish.rendered(language.value_or(core::AppLanguage::english));
    }

    /// A control in the agent's windows, by its role, and its name unless that is empty.
    [[nodiscard]] std::optional<live::AccessibleNode> control(const std::string& role, const std::string& name) {
        std::optional<live::AccessibleNode> found;
        const auto isFound = [&] {
            const auto root = desktop().accessibility().application(agentPid());
            found = root ? desktop().accessibility().find(*root,
                                                          [&](const live::AccessibleNode& node) {
                                                              return node.role == role &&
                                                                     (name.empty() || node.name == name) &&
                                                                     node.is(live::AccessibleNode::State::showing);
                                                          })
                         : std::nullopt;
            return found.has_value();
        };
        return waitUntil(isFound) ? found : std::nullopt;
    }

    /// Control with W, until none of its windows is there.
    void closeWindowsOfAgent() {
        const auto isOpen = [&] {
            return std::ranges::any_of(desktop().screen().managedWindows(), [&](xcb_window_t window) {
                return desktop().screen().processOf(window) == agentPid();
            });
        };
        require(waitUntil(isOpen), "the agent shows no window");
        const auto closes = [&] {
            if (desktop().bringToFront(agentPid())) {
                desktop().keyboard().tapWith({Key::leftControl}, Key::w);
            }
            return waitUntil([&] { return !isOpen(); }, 1s);
        };
        require(waitUntil(closes), "a window of the agent stays");
    }

    [[nodiscard]] bool isPanelOpen(bool expected, std::chrono::milliseconds limit = live::defaultTimeout) {
        return soak_.agent().waitForStatus(
            [&](const auto& status) { return status.at("clipboard").at("panelOpen") == expected; }, limit);
    }

    /// It may not have the keys yet when it opens.
    [[nodiscard]] bool leavePanelBy(Key key) {
        return waitUntil([&] {
            desktop().keyboard().tap(key);
            return isPanelOpen(false, 1s);
        });
    }

    SoakDesktop& soak_;
    std::mt19937& random_;
};

} // namespace

std::vector<Activity> activities(SoakDesktop& desktop, std::mt19937& random) {
    const auto user = std::make_shared<User>(desktop, random); // shared by the steps
    const auto step = [user](void (User::*action)()) { return [user, action] { ((*user).*action)(); }; };
    return {
        {"copy", 12, false, step(&User::copy)},
        {"stream of copies", 3, false, step(&User::copyStream)},
        {"secret copy", 2, false, step(&User::copySecret)},
        {"typing", 4, false, step(&User::type)},
        {"other application", 4, true, step(&User::switchApplication)},
        {"upload", 2, true, step(&User::upload)},
        {"language", 2, true, step(&User::changeLanguage)},
        {"setting", 2, true, step(&User::changeSetting)},
        {"panel", 3, true, step(&User::openPanel)},
        {"paste", 2, true, step(&User::paste)},
        {"capture", 2, true, step(&User::capture)},
        {"pause", 1, true, step(&User::pause)},
    };
}

} // namespace quillane::soak
