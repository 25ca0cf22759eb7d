// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/LiveMenu.hpp"
#include "desktop/tour/CaptureTour.hpp"
#include "desktop/tour/DirectionTour.hpp"
#include "desktop/tour/HistoryTour.hpp"
#include "desktop/tour/SettingsTour.hpp"
#include "desktop/tour/ShareTour.hpp"
#include "desktop/tour/Tour.hpp"

#include "desktop/fixture/XClients.hpp"

#include <iostream>

namespace quillane::live {
namespace {

/// One walk through the agent's main job in a real editor.
class KeyboardTour {
public:
    KeyboardTour(Tour& tour, LiveDesktop& desktop) : tour_(tour), desktop_(desktop) {}

    void walk() {
        startAgent();
        writeInEditor("mousepad", {"mousepad", "--disable-server"});
        writeInEditor("featherpad", {"featherpad", "--standalone"});
        pauseAndResume();
        mustSee(agent_->process().end() == ExitStatus{0, 0}, "the agent's orderly end");
        shareTour(tour_, desktop_);
        historyTour(tour_, desktop_);
        captureTour(tour_, desktop_);
        directionTour(tour_, desktop_);
        settingsTour(tour_, desktop_);
        for (const char* language : {"en", "he", "ar"}) {
            showMenu(language);
        }
        quit();
    }

private:
    void startAgent() {
        tour_.step("start", [&] {
            agent_ = got(LiveAgent::start(desktop_));
            mustSee(agent_->waitForStatus([](const auto& status) { return status.at("statusItemVisible") == true; }),
                    "the agent's item in the tray");
            const auto status = agent_->status();
            return "Quillane " + status.at("version").get<std::string>() +
                   " runs, its item is in the tray; it says \"" + status.at("status").get<std::string>() + "\"";
        });
    }

    void writeInEditor(const std::string& name, std::vector<std::string> command) {
        const auto file = desktop_.home() / (name + ".txt");
        tour_.step(name + " opens", [&] {
            mustSee(writeFile(file, ""), "a new file");
            command.push_back(file);
            editor_ = got(desktop_.startApplication(command));
            mustSee(waitUntil([&] { return text() == ""; }), "an empty editor with the focus");
            return "an empty document has the focus";
        });
        tour_.step(name + " English", [&] {
            desktop_.keyboard().type("hello ");
            return expectText("hello ");
        });
        tour_.step(name + " left Alt with left Shift", [&] { return switchTo(1, "Hebrew"); });
        tour_.step(name + " Hebrew", [&] {
            desktop_.keyboard().type("akuo ");
            return expectText("hello שלום ");
        });
        tour_.step(name + " Shift types English", [&] {
            desktop_.keyboard().press(Key::leftShift);
            desktop_.keyboard().type("quillane");
            desktop_.keyboard().release(Key::leftShift);
            mustSee(waitUntil([&] { return desktop_.screen().keysDown().none(); }), "no key held down");
            return expectText("hello שלום quillane") + ", and no key stays down";
        });
        tour_.step(name + " saves", [&] {
            desktop_.keyboard().chord({Key::leftControl, Key::s});
            const auto saved = [&] { return readFile(file).starts_with("hello שלום quillane"); };
            mustSee(waitUntil(saved), [&] { return "the text on the disk: " + readFile(file); });
            return "the file on the disk holds the same text";
        });
        tour_.step(name + " left Alt with left Shift again", [&] { return switchTo(0, "English"); });
        fixWrongLayout(name + " fixes Hebrew", "akuo", "שלום");
        tour_.step(name + " Arabic layout", [&] {
            mustSee(desktop_.setKeyboardMap("us,ara"), "another keyboard map");
            mustSee(agent_->useGroup(1, true) && agent_->useGroup(0, false), "Arabic, then English");
            return std::string("the layouts are English and Arabic, English is in effect");
        });
        fixWrongLayout(name + " fixes Arabic", "lvpfh", "مرحبا");
        mustSee(desktop_.setKeyboardMap("us,il") && agent_->useGroup(0, false), "the first keyboard map again");
    }

    /// Types a word in the layout in effect, and fixes it.
    void fixWrongLayout(const std::string& name, const std::string& typed, const std::string& meant) {
        tour_.step(name, [&] {
            const std::string before = text() + " ";
            desktop_.keyboard().type(" " + typed);
            const auto wrong = expectText(before + typed);
            desktop_.chordInto(editor_->pid(), {Key::leftAlt, Key::rightShift});
            const auto right = expectText(before + meant);
            mustSee(
                agent_->waitForStatus([](const auto& status) { return status.at("inputSource").at("isRTL") == true; }),
                "the source of the new text in effect");
            return wrong + "; after left Alt with right Shift " + right;
        });
    }

    void pauseAndResume() {
        tour_.step("pause", [&] {
            mustSee(agent_->command({"pause"}).succeeded(), "an answer to quillane pause");
            mustSee(agent_->useGroup(1, true), "Hebrew");
            const std::string before = text();
            desktop_.keyboard().tapWith({Key::leftShift}, Key::b);
            return "Shift with a letter is the layout's own again: " + expectText(before + "B");
        });
        tour_.step("resume", [&] {
            mustSee(agent_->command({"resume"}).succeeded(), "an answer to quillane resume");
            mustSee(agent_->waitForStatus([](const auto& status) { return status.at("monitorRunning") == true; }),
                    "the keyboard observed");
            const std::string before = text();
            desktop_.keyboard().tapWith({Key::leftShift}, Key::b);
            return expectText(before + "b");
        });
    }

    void showMenu(const std::string& language) {
        std::optional<LiveMenu> menu;
        tour_.step("menu in " + language, [&] {
            if (agent_->process().isRunning()) {
                mustSee(agent_->process().end() == ExitStatus{0, 0}, "the agent's orderly end");
            }
            mustSee(chooseAgentLanguage(desktop_, language), "the language in the settings");
            agent_ = got(LiveAgent::start(desktop_));
            menu = got(LiveMenu::open(desktop_));
            const auto rows = menu->rows();
            mustSee(rows.size() == 20, "20 rows, but " + std::to_string(rows.size()));
            return std::to_string(rows.size()) + " rows, the last \"" + rows.back().title + "\"";
        });
        mustSee(menu->close(), "the menu closed");
    }

    void quit() {
        tour_.step("quit", [&] {
            mustSee(agent_->command({"quit"}).succeeded(), "an answer to quillane quit");
            mustSee(agent_->process().waitForExit(defaultTimeout) == ExitStatus{0, 0}, "the agent's orderly end");
            mustSee(isFreeToGrab(desktop_.screen(), Key::b, XCB_MOD_MASK_SHIFT), "the keys given back");
            return "the agent has ended and given every key back";
        });
    }

    std::string switchTo(int group, const std::string& language) {
        desktop_.chordInto(editor_->pid(), {Key::leftAlt, Key::leftShift});
        mustSee(waitUntil([&] { return desktop_.screen().group() == group; }), "the other layout");
        std::string said;
        const auto says = [&](const nlohmann::json& status) {
            said = status.at("lastAction");
            return said.starts_with("Keyboard language: " + language);
        };
        mustSee(agent_->waitForStatus(says), [&] { return "\"Keyboard language: " + language + "\", but: " + said; });
        return "layout " + std::to_string(group + 1) + " is in effect; the agent says \"" + said + "\"";
    }

    std::string expectText(const std::string& expected) {
        std::string last;
        mustSee(waitUntil([&] { return (last = text()) == expected; }),
                [&] { return "\"" + expected + "\" in the editor, but: \"" + last + "\""; });
        return "the editor holds \"" + last + "\"";
    }

    std::string text() { return desktop_.editorText(editor_->pid()).value_or("(no focused editor)"); }

    Tour& tour_;
    LiveDesktop& desktop_;
    std::optional<LiveAgent> agent_;
    std::optional<ChildProcess> editor_;
};

int run(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    std::filesystem::create_directories(folder, error);
    if (error) {
        std::cerr << "quillane_tour: cannot write to " << folder << '\n';
        return 1;
    }
    auto desktop = LiveDesktop::start();
    if (!desktop) {
        std::cerr << "quillane_tour: " << desktop.error() << '\n';
        return 1;
    }
    Tour tour(**desktop, std::filesystem::absolute(folder));
    try {
        KeyboardTour(tour, **desktop).walk();
    } catch (const std::exception&) {
        return 1; // set by the step
    }
    std::cout << "Pictures are in " << folder.string() << std::endl;
    return 0;
}

} // namespace
} // namespace quillane::live

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: quillane_tour FOLDER\n";
        return 2;
    }
    return quillane::live::run(argv[1]);
}
