// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/direction/LiveWriter.hpp"

#include <regex>

namespace quillane::live {

namespace {

constexpr auto program = "/usr/lib/libreoffice/program/soffice.bin"; // what the command soffice runs

constexpr auto emptyDocument = R"(<?xml version="1.0" encoding="UTF-8"?>
<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0"
 xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" office:version="1.2"
 office:mimetype="application/vnd.oasis.opendocument.text"><office:body><office:text>
<text:p>one</text:p><text:p>two</text:p><text:p>three</text:p>
</office:text></office:body></office:document>)";

/// Turns complex text layout on, which shows the direction buttons, and dialogs and greetings off.
constexpr auto settings = R"(<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry" xmlns:xs="http://www.w3.org/2001/XMLSchema"
 xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
<item oor:path="/org.openoffice.Office.Common/I18N/CTL"><prop oor:name="CTLFont" oor:op="fuse"><value>true</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="ShowTipOfTheDay" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="FirstRun" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Setup/Product"><prop oor:name="ooSetupLastVersion" oor:op="fuse"><value>7.4</value></prop></item>
</oor:items>)";

std::string firstGroup(const std::string& text, const std::string& pattern) {
    std::smatch match;
    return std::regex_search(text, match, std::regex(pattern)) ? match[1].str() : std::string();
}

/// The direction that the document gives a paragraph through its own style; "lr-tb" when it has none.
std::string directionOf(const std::string& document, const std::string& paragraph) {
    const auto style = firstGroup(document, "<text:p text:style-name=\"([^\"]*)\">" + paragraph + "<");
    const auto begin = document.find("<style:style style:name=\"" + style + "\"");
    const auto definition = begin == std::string::npos
                                ? std::string()
                                : document.substr(begin, document.find("</style:style>", begin) - begin);
    const auto mode = firstGroup(definition, "style:writing-mode=\"([^\"]*)\"");
    return mode.empty() ? "lr-tb" : mode;
}

} // namespace

tl::expected<LiveWriter, std::string> LiveWriter::start(LiveDesktop& desktop) {
    const auto document = desktop.home() / "document.fodt";
    const auto profile = desktop.home() / "libreoffice";
    std::error_code error;
    std::filesystem::create_directories(profile / "user", error);
    if (error || !writeFile(document, emptyDocument) ||
        !writeFile(profile / "user/registrymodifications.xcu", settings)) {
        return tl::unexpected(std::string("cannot write the document and the settings"));
    }
    const std::string installation = "-env:UserInstallation=file://" + profile.string();
    // The first start with a profile asks to be restarted (exit status 81); this one has no window.
    (void)desktop.run({program, "--headless", "--terminate_after_init", "--norestore", "--nologo", installation},
                      std::chrono::seconds(40));
    auto process = desktop.startApplication({program, "--writer", "--norestore", "--nologo", installation, document},
                                            {{"SAL_USE_VCLPLUGIN", "gtk3"}});
    if (!process) {
        return tl::unexpected(process.error());
    }
    LiveWriter writer(desktop, std::move(*process), document);
    if (!waitUntil([&] { return writer.paragraph() == "one"; })) {
        return tl::unexpected(std::string("the document does not get the focus"));
    }
    return writer;
}

std::optional<std::string> LiveWriter::paragraph() const {
    return desktop_->editorText(process_.pid());
}

std::vector<std::string> LiveWriter::savedDirections() const {
    const auto before = readFile(document_);
    desktop_->keyboard().chord({Key::leftControl, Key::s});
    (void)waitUntil([&] {
        const auto now = readFile(document_);
        return now != before && now.ends_with("</office:document>");
    });
    const auto saved = readFile(document_);
    std::vector<std::string> result;
    for (const std::string paragraph : {"one", "two", "three"}) {
        result.push_back(paragraph + " " + directionOf(saved, paragraph));
    }
    return result;
}

} // namespace quillane::live
