// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/direction/LiveOffice.hpp"

#include <algorithm>
#include <cctype>
#include <regex>

namespace quillane::live {

namespace {

constexpr auto program = "/usr/lib/libreoffice/program/soffice.bin"; // what the command soffice runs

/// Turns complex text layout on, which shows the direction buttons, and dialogs and greetings off.
constexpr std::string_view settings = R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry" xmlns:xs="http://www.w3.org/2001/XMLSchema"
 xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
<item oor:path="/org.openoffice.Office.Common/I18N/CTL"><prop oor:name="CTLFont" oor:op="fuse"><value>true</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="ShowTipOfTheDay" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="FirstRun" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Setup/Product"><prop oor:name="ooSetupLastVersion" oor:op="fuse"><value>7.4</value></prop></item>
<item oor:path="/org.openoffice.Office.Linguistic/General"><prop oor:name="UILocale" oor:op="fuse"><value>LANGUAGE</value></prop></item>
</oor:items>)";

std::string settingsIn(const std::string& language) {
    constexpr std::string_view placeholder = "LANGUAGE";
    return std::string(settings).replace(settings.find(placeholder), placeholder.size(), language);
}

std::string firstGroup(const std::string& text, const std::string& pattern) {
    std::smatch match;
    return std::regex_search(text, match, std::regex(pattern)) ? match[1].str() : std::string();
}

bool hasWindow(const LiveDesktop& desktop, const LiveOffice::Document& document) {
    const auto windows = desktop.screen().managedWindows();
    return std::ranges::any_of(windows, [&](xcb_window_t window) {
        const auto title = desktop.screen().text(window, "_NET_WM_NAME");
        return title.find(document.name) != std::string::npos && title.ends_with("LibreOffice " + document.program);
    });
}

} // namespace

tl::expected<LiveOffice, std::string> LiveOffice::start(LiveDesktop& desktop, const Document& document,
                                                        const std::string& language) {
    const auto file = desktop.home() / document.name;
    const auto profile = desktop.home() / "libreoffice";
    std::error_code error;
    std::filesystem::create_directories(profile / "user", error);
    if (error || !writeFile(file, std::string(document.content)) ||
        !writeFile(profile / "user/registrymodifications.xcu", settingsIn(language))) {
        return tl::unexpected(std::string("cannot write the document and the settings"));
    }
    const std::string installation = "-env:UserInstallation=file://" + profile.string();
    // The first start with a profile asks to be restarted (exit status 81); this one has no window.
    (void)desktop.run({program, "--headless", "--terminate_after_init", "--norestore", "--nologo", installation},
                      std::chrono::seconds(40));
    auto mode = "--" + document.program;
    std::ranges::transform(mode, mode.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    auto process = desktop.startApplication({program, mode, "--norestore", "--nologo", installation, file},
                                            {{"SAL_USE_VCLPLUGIN", "gtk3"}});
    if (!process) {
        return tl::unexpected(process.error());
    }
    if (!waitUntil([&] { return hasWindow(desktop, document); })) {
        return tl::unexpected("no window shows " + document.name);
    }
    return LiveOffice(desktop, std::move(*process), file);
}

std::string LiveOffice::saved() const {
    const auto before = readFile(document_);
    desktop_->keyboard().chord({Key::leftControl, Key::s});
    (void)waitUntil([&] {
        const auto now = readFile(document_);
        return now != before && now.ends_with("</office:document>");
    });
    return readFile(document_);
}

std::string writingModeOf(const std::string& document, const std::string& pattern) {
    const auto style = firstGroup(document, pattern);
    const auto begin = document.find("<style:style style:name=\"" + style + "\"");
    const auto definition = begin == std::string::npos
                                ? std::string()
                                : document.substr(begin, document.find("</style:style>", begin) - begin);
    const auto mode = firstGroup(definition, "style:writing-mode=\"([^\"]*)\"");
    return mode.empty() ? "lr-tb" : mode;
}

} // namespace quillane::live
