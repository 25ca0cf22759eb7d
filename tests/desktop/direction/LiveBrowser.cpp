// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/direction/LiveBrowser.hpp"

#include "desktop/fixture/XReply.hpp"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <map>
#include <sstream>

namespace quillane::live {

namespace {

constexpr auto page = R"(<!doctype html><meta charset="utf-8"><title>page</title>
<p>A page of text</p>
<textarea id="area" rows="4" cols="30">first line
second line</textarea>
<textarea id="other" rows="2" cols="30">other</textarea>
<p><input id="secret" type="password" value="secret"> <input id="fixed" value="fixed" readonly>
<input id="line" value="line"> <input id="blank"></p>
<div id="rich" contenteditable><p>one</p><p>two</p><p>שלוש</p></div>
<script>
const area = document.getElementById('area');
area.setSelectionRange(1, 3);
const wanted = document.getElementById(location.hash.slice(1));
if (wanted) { wanted.focus(); }
const rich = document.getElementById('rich');
if (wanted === rich) { getSelection().collapse(rich.children[1].firstChild, 1); }
const paragraphs = wanted === rich ? Array.from(rich.children) : location.hash === '#line' ? [wanted] : [area];
let ready = false; // once the keys have come to the page
setInterval(() => {
  ready = ready || document.hasFocus();
  if (!ready) { return; }
  document.title = ['state', paragraphs.map(one => getComputedStyle(one).direction).join(','), wanted === rich ? getSelection().toString().length : area.selectionStart + '-' + area.selectionEnd,
                    document.activeElement.id || 'none', area.value.replaceAll('\n', '/').replaceAll(' ', '_'),
                    navigator.language, 'end'].join(' ');
}, 20);
</script>)";

} // namespace

tl::expected<LiveBrowser, std::string> LiveBrowser::start(LiveDesktop& desktop, const std::string& focus, Tree tree,
                                                          const std::string& language) {
    std::vector<std::string> arguments{
        "chromium",           "--no-sandbox",
        "--disable-gpu",      "--disable-quic",
        "--no-first-run",     "--disable-background-networking",
        "--disable-sync",     "--disable-component-update",
        "--new-window",       "--password-store=basic",
        "--lang=" + language, "--user-data-dir=" + (desktop.home() / "chromium").string()};
    if (tree == Tree::atOnce) {
        arguments.emplace_back("--force-renderer-accessibility");
    }
    return run(desktop, focus, std::move(arguments), {{"LANGUAGE", language}});
}

tl::expected<LiveBrowser, std::string> LiveBrowser::startFirefox(LiveDesktop& desktop, const std::string& focus,
                                                                 const FirefoxProfile& profile) {
    const auto folder = desktop.home() / "firefox";
    const std::map<std::string, std::string> preferences{
        {"bidi.browser.ui", profile.hasCommand ? "true" : "false"},
        {"intl.locale.requested", '"' + profile.language + '"'},
        {"extensions.autoDisableScopes", "0"}, // packages of languages are extensions
        {"browser.shell.checkDefaultBrowser", "false"},
        {"browser.aboutwelcome.enabled", "false"},
        {"browser.preonboarding.enabled", "false"},
        {"browser.startup.homepage_override.mstone", "\"ignore\""},
        {"termsofuse.bypassNotification", "true"},
        {"datareporting.policy.dataSubmissionEnabled", "false"},
        {"toolkit.startup.max_resumed_crashes", "-1"}};
    std::string lines;
    for (const auto& [name, value] : preferences) {
        lines += "user_pref(\"" + name + "\", " + value + ");\n";
    }
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (!writeFile(folder / "user.js", lines)) {
        return tl::unexpected("cannot write " + (folder / "user.js").string());
    }
    return run(desktop, focus, {"firefox-esr", "--no-remote", "--profile", folder.string()}, {});
}

tl::expected<LiveBrowser, std::string> LiveBrowser::run(LiveDesktop& desktop, const std::string& focus,
                                                        std::vector<std::string> arguments, const Environment& more) {
    const auto file = desktop.home() / "page.html";
    if (!writeFile(file, page)) {
        return tl::unexpected("cannot write " + file.string());
    }
    arguments.push_back("file://" + file.string() + "#" + focus);
    auto process = desktop.startApplication(std::move(arguments), more);
    if (!process) {
        return tl::unexpected(process.error());
    }
    LiveBrowser browser(desktop, std::move(*process));
    const bool ready = waitUntil([&] {
        const auto now = browser.state();
        return now && now->focused == focus;
    });
    if (!ready) {
        return tl::unexpected("the page does not get the focus on " + focus);
    }
    return browser;
}

std::optional<PageState> LiveBrowser::state() const {
    for (const auto window : desktop_->screen().managedWindows()) {
        const auto title = desktop_->screen().text(window, "_NET_WM_NAME");
        // In right-to-left languages an invisible mark comes first.
        std::istringstream words(title.substr(std::min(title.find("state "), title.size())));
        std::string first;
        PageState state;
        if (words >> first >> state.direction >> state.selection >> state.focused >> state.text >> state.language &&
            first == "state") {
            return state;
        }
    }
    return std::nullopt;
}

bool LiveBrowser::hasOpenMenu() const {
    auto* connection = desktop_->screen().connection();
    const auto tree =
        own(xcb_query_tree_reply(connection, xcb_query_tree(connection, desktop_->screen().root()), nullptr));
    for (int index = 0; tree && index < xcb_query_tree_children_length(tree.get()); ++index) {
        const auto window = xcb_query_tree_children(tree.get())[index];
        const auto attributes =
            own(xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window), nullptr));
        const bool isShown =
            attributes && attributes->override_redirect != 0 && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        if (isShown && desktop_->screen().processOf(window) == process_.pid()) {
            return true;
        }
    }
    return false;
}

bool LiveBrowser::showsMenu() const {
    const auto& accessibility = desktop_->accessibility();
    const auto root = accessibility.application(process_.pid());
    return root && accessibility.find(*root, [](const AccessibleNode& node) {
        return (node.role == "menu" || node.role == "popup menu") && node.is(AccessibleNode::State::showing);
    });
}

void LiveBrowser::signalPages(int number) const {
    std::vector<pid_t> family{process_.pid()};
    for (std::size_t index = 0; index < family.size(); ++index) {
        const auto tasks = std::filesystem::path("/proc") / std::to_string(family[index]) / "task";
        std::error_code error;
        for (const auto& task : std::filesystem::directory_iterator(tasks, error)) {
            std::istringstream children(readFile(task.path() / "children"));
            for (pid_t child = 0; children >> child;) {
                family.push_back(child);
            }
        }
        const auto command = readFile(std::filesystem::path("/proc") / std::to_string(family[index]) / "cmdline");
        if (command.find("--type=renderer") != std::string::npos) {
            kill(family[index], number);
        }
    }
}

} // namespace quillane::live
