// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "soak/SoakDesktop.hpp"

#include "desktop/agent/HistoryDesktop.hpp"
#include "desktop/fixture/LiveDesktopTest.hpp"
#include "support/SmallDisk.hpp"

#include <algorithm>
#include <csignal>

#include <sys/mount.h>

namespace quillane::soak {
namespace {

using live::require;
using live::required;
using live::waitUntil;
using namespace std::chrono_literals;

const std::array<std::vector<std::string>, 2> editorCommands{
    {{"mousepad", "--disable-server"}, {"featherpad", "--standalone"}}};

constexpr auto recovery = 5s; ///< of Shift typing

std::filesystem::path fakeTimeLibrary() {
    std::error_code absent;
    for (const auto& folder : std::filesystem::directory_iterator("/usr/lib", absent)) {
        const auto library = folder.path() / "faketime" / "libfaketimeMT.so.1";
        if (std::filesystem::exists(library, absent)) {
            return library;
        }
    }
    return {};
}

} // namespace

SoakDesktop::SoakDesktop(Disk disk, Clock clock)
    : disk_(disk),
      clockLibrary_(clock == Clock::adjustable ? fakeTimeLibrary() : std::filesystem::path()),
      desktop_(required(live::LiveDesktop::start())),
      server_(required(servers::NginxServer::start())) {
    const auto folder = historyFolder().parent_path();
    std::filesystem::create_directories(folder);
    require(disk != Disk::small || live::mountSmallDisk(folder, "96m"), "no small disk");
    core::ClipboardOptions options;
    options.enabled = true;
    options.limit = static_cast<std::int64_t>(historyLimit);
    const auto address = "http://127.0.0.1:" + std::to_string(server_->ports().http);
    require(live::writeHistorySettings(*desktop_, options, {{"FileShareServer", "<string>" + address + "</string>"}}),
            "the settings cannot be written");
    if (!clockFile().empty()) {
        require(live::writeFile(clockFile(), "+0"), "no clock");
    }
    startKeyring();
    copies_ = required(Copies::start(*desktop_));
}

SoakDesktop::~SoakDesktop() {
    agent_.reset();
    if (disk_ == Disk::small) {
        ::umount2(historyFolder().parent_path().c_str(), MNT_DETACH);
    }
}

std::filesystem::path SoakDesktop::historyFolder() const {
    return desktop_->home() / ".local" / "share" / "Quillane" / "ClipboardHistory";
}

std::filesystem::path SoakDesktop::clockFile() const {
    return clockLibrary_.empty() ? std::filesystem::path() : desktop_->home() / "clock";
}

live::Environment SoakDesktop::agentEnvironment() const {
    if (clockFile().empty()) {
        return {};
    }
    return {{"LD_PRELOAD", clockLibrary_},
            {"FAKETIME_TIMESTAMP_FILE", clockFile()},
            {"FAKETIME_DONT_FAKE_MONOTONIC", "1"},
            {"FAKETIME_CACHE_DURATION", "1"}};
}

void SoakDesktop::startAgent() {
    agent_ = required(live::LiveAgent::start(*desktop_, true, agentEnvironment()));
    require(agent_->waitForStatus([](const auto& status) {
        return status.at("clipboard").at("status") == "Clipboard history is active";
    }),
            "the history is not active");
}

live::ChildProcess SoakDesktop::launchAgent() {
    return required(desktop_->startProcess({live::agentExecutable()}));
}

void SoakDesktop::startKeyring() {
    keyring_.reset();
    keyring_ = required(live::startKeyring(*desktop_));
}

void SoakDesktop::endKeyring() {
    keyring_->signal(SIGKILL);
    keyring_.reset();
}

std::array<pid_t, 2> SoakDesktop::editors() {
    std::array<pid_t, 2> pids{};
    for (std::size_t i = 0; i < editors_.size(); ++i) {
        auto& editor = editors_.at(i);
        if (!editor || !editor->isRunning()) {
            editor = required(desktop_->startApplication(editorCommands.at(i)));
            require(waitUntil([&] { return desktop_->editorText(editor->pid()) == ""; }), "no empty editor");
        }
        pids.at(i) = editor->pid();
    }
    return pids;
}

void SoakDesktop::endEditors() {
    for (auto& editor : editors_) {
        editor.reset();
    }
}

void SoakDesktop::waitForText(pid_t editor, const std::string& expected) {
    std::string last;
    const auto isThere = [&] { return (last = desktop_->editorText(editor).value_or("(none)")) == expected; };
    if (!waitUntil(isThere)) {
        require(false, "expected \"" + expected + "\" in the editor, but: " + last.substr(0, 200));
    }
}

void SoakDesktop::checkKeyboard(std::size_t editor) {
    const auto pid = editors().at(editor);
    require(desktop_->bringToFront(pid), "no editor in front");
    require(agent_->useGroup(0, false), "the agent does not see the English layout");
    desktop_->chordInto(pid, {live::Key::leftControl, live::Key::a});
    desktop_->chordInto(pid, {live::Key::backspace});
    waitForText(pid, "");
    desktop_->keyboard().type("quick");
    waitForText(pid, "quick");
    require(agent_->useGroup(1, true), "the agent does not see the Hebrew layout");
    std::string typed = "quick";
    const auto typeWithShift = [&](std::string_view letters) {
        desktop_->keyboard().press(live::Key::leftShift);
        desktop_->keyboard().type(letters);
        desktop_->keyboard().release(live::Key::leftShift);
    };
    // The agent may still be looking for the focus on a bus that has come back.
    const auto isEnglish = [&] {
        typeWithShift("f");
        const auto hasMore = [&] { return desktop_->editorText(pid).value_or("").size() > typed.size(); };
        require(waitUntil(hasMore), "no letter comes");
        typed = *desktop_->editorText(pid);
        return typed.ends_with('f');
    };
    require(waitUntil(isEnglish, recovery, 100ms), "Shift types no English: " + typed);
    typeWithShift("ox");
    waitForText(pid, typed + "ox");
    require(desktop_->screen().keysDown().none(), "a key is down");
}

std::string SoakDesktop::readerOutput(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"python3", QUILLANE_READER});
    const auto result = desktop_->run(std::move(arguments));
    require(result.succeeded(), "the history cannot be read from outside: " + result.errors);
    return result.output;
}

void SoakDesktop::checkHistory() {
    if (key_.empty()) {
        key_ = readerOutput({"key"});
        key_.resize(key_.find_last_not_of('\n') + 1);
    }
    const auto now = Copies::Clock::now();
    const auto seen = nlohmann::json::parse(readerOutput({"copies", historyFolder(), key_}));
    require(seen.at("secrets").empty(), "a secret is in the history: " + seen.at("secrets").dump());
    const auto held = seen.at("copies").get<std::set<int>>();
    // What else was copied counts towards the limit, and an entry that was pasted outlives one that was copied later.
    constexpr std::size_t margin = 10;
    const auto others = seen.at("entries").get<std::size_t>() - held.size();
    std::string missing;
    for (const int number : copies_->due(now, historyLimit - std::min(others + margin, historyLimit))) {
        missing += held.contains(number) ? "" : " " + std::to_string(number);
    }
    require(missing.empty(), "of " + std::to_string(copies_->count()) + " copies these are not in the history, of " +
                                 std::to_string(held.size()) + ":" + missing);
    const auto folder = historyFolder().parent_path();
    require(std::distance(std::filesystem::directory_iterator(folder), {}) == 1, "a history was set aside");
}

} // namespace quillane::soak
