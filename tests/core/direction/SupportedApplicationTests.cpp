// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/DirectionTarget.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quillane::core {
namespace {

using ::testing::ElementsAre;
using ::testing::Not;
using ::testing::Pair;

std::string nameOf(DirectionManner manner) {
    switch (manner) {
    case DirectionManner::outlookToolbar:
        return "Outlook toolbar";
    case DirectionManner::contextMenu:
        return "context menu";
    case DirectionManner::wordRibbon:
        return "Word ribbon";
    case DirectionManner::libreOfficeToolbar:
        return "LibreOffice toolbar";
    case DirectionManner::swapCommand:
        return "swap command";
    }
    return "unknown";
}

TEST(SupportedApplication, RowsInTheOrderOfThePicker) {
    std::vector<std::string> rows;
    for (const auto& row : supportedApplications()) {
        rows.push_back(std::string(row.bundleID) + " | " + std::string(row.displayName) + " | " +
                       std::string(row.directionMenuTitle()) + " | " + nameOf(row.manner) +
                       (row.buildsTreeOnDemand ? " | on demand" : ""));
    }
    const std::string chromium = " | Writing Direction | context menu | on demand";
    const std::string webKit = " | Paragraph Direction | context menu";
    EXPECT_THAT(
        rows,
        ElementsAre(
            "com.microsoft.Outlook | Outlook |  | Outlook toolbar", //
            "com.google.Chrome | Chrome" + chromium, "com.apple.Safari | Safari" + webKit,
            "com.apple.TextEdit | TextEdit | Writing Direction | context menu",
            "com.apple.Notes | Notes | Writing Direction | context menu", "com.apple.mail | Mail" + webKit,
            "com.microsoft.Word | Word |  | Word ribbon",
            "org.libreoffice.script | LibreOffice Writer |  | LibreOffice toolbar",
            "org.libreoffice.script | LibreOffice Calc |  | LibreOffice toolbar",
            "org.libreoffice.script | LibreOffice Impress |  | LibreOffice toolbar",
            "org.libreoffice.script | LibreOffice Draw |  | LibreOffice toolbar",
            "org.chromium.Chromium | Chromium" + chromium, "com.google.Chrome.beta | Chrome Beta" + chromium,
            "com.google.Chrome.dev | Chrome Dev" + chromium, "com.google.Chrome.canary | Chrome Canary" + chromium,
            "com.microsoft.edgemac | Edge" + chromium, "com.microsoft.edgemac.Beta | Edge Beta" + chromium,
            "com.microsoft.edgemac.Dev | Edge Dev" + chromium, "com.microsoft.edgemac.Canary | Edge Canary" + chromium,
            "com.brave.Browser | Brave" + chromium, "com.brave.Browser.beta | Brave Beta" + chromium,
            "com.brave.Browser.nightly | Brave Nightly" + chromium, "com.vivaldi.Vivaldi | Vivaldi" + chromium,
            "com.operasoftware.Opera | Opera" + chromium, "com.operasoftware.OperaNext | Opera Beta" + chromium,
            "com.operasoftware.OperaDeveloper | Opera Developer" + chromium,
            "com.operasoftware.OperaGX | Opera GX" + chromium, "company.thebrowser.Browser | Arc" + chromium,
            "org.mozilla.firefox | Firefox |  | swap command",
            "org.mozilla.firefoxdeveloperedition | Firefox Developer Edition |  | swap command",
            "org.mozilla.nightly | Firefox Nightly |  | swap command",
            "com.apple.SafariTechnologyPreview | Safari Technology Preview" + webKit,
            "com.kagi.kagimacOS | Orion" + webKit, "com.duckduckgo.macos.browser | DuckDuckGo" + webKit));
}

TEST(SupportedApplication, EveryRowIsComplete) {
    for (const auto& row : supportedApplications()) {
        for (const auto* part = &row; part != nullptr; part = part->subject) {
            EXPECT_EQ(part->bundleID, row.bundleID);
            EXPECT_FALSE(part->placementHint.key.empty()) << row.displayName;
            EXPECT_FALSE(part->labels->rightToLeft.english.empty()) << row.displayName;
            EXPECT_FALSE(part->labels->leftToRight.english.empty()) << row.displayName;
            const bool isMenu = part->manner == DirectionManner::contextMenu;
            EXPECT_EQ(part->labels->menu.english.empty(), !isMenu) << row.displayName;
            const bool isIdentified = part->editor == EditorRule::document || part->editor == EditorRule::subjectLine;
            EXPECT_EQ(part->editorIdentifier.empty(), !isIdentified) << row.displayName;
        }
    }
}

/// A label in each language, in the order of `Labels`.
using Translations = std::vector<std::string_view>;

Translations translationsOf(const Labels& labels) {
    const auto& [english, british, hebrew, arabic, persian, urdu, french, german, russian, spanish] = labels;
    Translations all{english, british, hebrew, arabic, persian, urdu, french, german, russian, spanish};
    std::erase(all, std::string_view());
    return all;
}

const DirectionLabels& labelsOf(std::string_view bundleID) {
    return *supportedApplication(bundleID)->labels;
}

TEST(SupportedApplication, LabelsOfChromiumAreThoseOfItsTranslations) {
    const auto& labels = labelsOf("org.chromium.Chromium");
    EXPECT_THAT(translationsOf(labels.menu),
                ElementsAre("Writing Direction", "Writing direction", "כיוון כתיבה", "اتجاه الكتابة", "جهت نوشتن",
                            "تحریر کا ڈائریکشن", "Sens de l'écriture", "Schreibrichtung", "Направление письма",
                            "Sentido de la escritura"));
    EXPECT_THAT(translationsOf(labels.rightToLeft),
                ElementsAre("Right to Left", "מימין לשמאל", "من اليمين لليسار", "راست به چپ", "دائیں سے بائیں",
                            "De droite à gauche", "Linksläufig", "Справа налево", "De derecha a izquierda"));
    EXPECT_THAT(translationsOf(labels.leftToRight),
                ElementsAre("Left to Right", "משמאל לימין", "من اليسار لليمين", "چپ به راست", "بائیں سے دائیں",
                            "De gauche à droite", "Rechtsläufig", "Слева направо", "De izquierda a derecha"));
}

TEST(SupportedApplication, LabelsOfLibreOfficeAreThoseOfItsTranslations) {
    const auto& labels = labelsOf("org.libreoffice.script");
    EXPECT_THAT(translationsOf(labels.rightToLeft),
                ElementsAre("Right-To-Left", "מימין לשמאל", "من اليمين إلى اليسار", "راست به چپ", "De droite à gauche",
                            "Rechts-nach-links", "Справа налево", "De derecha a izquierda"));
    EXPECT_THAT(translationsOf(labels.leftToRight),
                ElementsAre("Left-To-Right", "משמאל לימין", "من اليسار إلى اليمين", "چپ به راست", "De gauche à droite",
                            "Links-nach-rechts", "Слева направо", "De izquierda a derecha"));
}

TEST(SupportedApplication, LabelsOfFirefoxAreThoseOfItsTranslations) {
    const auto& labels = labelsOf("org.mozilla.firefox");
    for (const auto direction : {WritingDirection::rightToLeft, WritingDirection::leftToRight}) {
        EXPECT_THAT(translationsOf(labels.command(direction)),
                    ElementsAre("Switch Text Direction", "היפוך כיוון כתיבה", "اعكس اتجاه النص", "تعویض جهت متن",
                                "متن کی سمت بدلیں کریں", "Changer le sens du texte", "Textrichtung ändern",
                                "Переключить направление текста на странице", "Cambiar dirección del texto"));
    }
    EXPECT_THAT(translationsOf(labels.bar), ElementsAre("Edit", "עריכה", "حرّر", "ویرایش", "تدوین کریں", "Édition",
                                                        "Bearbeiten", "Правка", "Editar"));
}

TEST(SupportedApplication, LabelsWithoutPublishedTranslationsAreEnglish) {
    const auto commands = [](const DirectionLabels& labels) {
        auto all = translationsOf(labels.rightToLeft);
        for (const auto* label : {&labels.leftToRight, &labels.menu, &labels.bar, &labels.opener}) {
            const auto more = translationsOf(*label);
            all.insert(all.end(), more.begin(), more.end());
        }
        return all;
    };
    EXPECT_THAT(commands(appKitDirectionLabels()), ElementsAre("Right to Left", "Left to Right", "Writing Direction"));
    EXPECT_THAT(commands(labelsOf("com.apple.Safari")),
                ElementsAre("Right to Left", "Left to Right", "Paragraph Direction"));
    EXPECT_THAT(commands(labelsOf("com.microsoft.Outlook")),
                ElementsAre("Right to Left", "Left to Right", "Formatting Toolbar", "See more items"));
    EXPECT_THAT(commands(labelsOf("com.microsoft.Word")),
                ElementsAre("Right-to-Left", "Left-to-Right", "ribbon", "Home"));
}

TEST(SupportedApplication, EveryMenuHasTheHeadingsOfAppKit) {
    for (const auto& row : supportedApplications()) {
        EXPECT_THAT(translationsOf(row.labels->paragraph), ElementsAre("Paragraph")) << row.displayName;
        EXPECT_THAT(translationsOf(row.labels->selection), ElementsAre("Selection")) << row.displayName;
    }
}

TEST(SupportedApplication, OnlyTextViewsOfAppKitIdentifyTheirActions) {
    for (const auto& row : supportedApplications()) {
        const bool isTextView = row.editor == EditorRule::document;
        EXPECT_EQ(row.labels->identifiesActions, isTextView) << row.displayName;
        EXPECT_TRUE(row.subject == nullptr || row.subject->labels->identifiesActions) << row.displayName;
    }
}

TEST(SupportedApplication, EditorsAreIdentifiedAsTheirApplicationsDo) {
    EXPECT_EQ(supportedApplication("com.apple.TextEdit")->editorIdentifier, "First Text View");
    EXPECT_EQ(supportedApplication("com.apple.Notes")->editorIdentifier, "Note Body Text View");
    EXPECT_EQ(supportedApplication("com.apple.mail")->subject->editorIdentifier, "Mail.subjectField");
    EXPECT_EQ(supportedApplication("com.microsoft.Outlook")->subject->editorIdentifier, "subjectTextField");
}

TEST(SupportedApplication, SubjectLinesBelongToTheirApplication) {
    for (const auto& row : supportedApplications()) {
        if (row.subject != nullptr) {
            EXPECT_EQ(row.subject->displayName, row.displayName);
            EXPECT_EQ(row.subject->manner, DirectionManner::contextMenu) << row.displayName;
            EXPECT_EQ(row.subject->editor, EditorRule::subjectLine) << row.displayName;
        }
    }
}

TEST(SupportedApplication, NoLabelOfOneDirectionIsOneOfTheOther) {
    for (const auto& row : supportedApplications()) {
        if (row.manner == DirectionManner::swapCommand) {
            continue;
        }
        const auto& [english, british, hebrew, arabic, persian, urdu, french, german, russian, spanish] =
            row.labels->rightToLeft;
        for (const auto label : {english, british, hebrew, arabic, persian, urdu, french, german, russian, spanish}) {
            EXPECT_EQ(row.labels->rightToLeft.matches(label), !label.empty());
            EXPECT_FALSE(row.labels->leftToRight.matches(label)) << row.displayName << ": " << label;
        }
    }
}

TEST(SupportedApplication, IsFoundByItsBundleIdentifier) {
    for (const auto& row : supportedApplications()) {
        EXPECT_EQ(supportedApplication(row.bundleID)->bundleID, row.bundleID);
    }
    EXPECT_EQ(supportedApplication("com.apple.Notes")->displayName, "Notes");
}

TEST(SupportedApplication, IdentifiersAreComparedExactly) {
    for (const auto* other : {"com.apple.Mail", "com.apple.textedit", "com.apple.mail ", "com.apple", ""}) {
        EXPECT_EQ(supportedApplication(other), nullptr) << other;
    }
}

TEST(SupportedApplication, EachWindowClassIsOfOneApplication) {
    std::set<std::string_view> seen;
    for (const auto& row : supportedApplications()) {
        for (const auto windowClass : row.windowClasses) {
            if (!windowClass.empty()) {
                EXPECT_TRUE(seen.insert(windowClass).second) << windowClass;
                EXPECT_EQ(applicationOfWindowClass(windowClass), &row);
            }
        }
    }
    EXPECT_EQ(applicationOfWindowClass("Chromium"), nullptr) << "classes are given in lower case";
    EXPECT_EQ(applicationOfWindowClass(""), nullptr);
}

TEST(SupportedApplication, WindowClassesAreThoseOfTheirPrograms) {
    std::vector<std::pair<std::string_view, std::string_view>> classes;
    for (const auto& row : supportedApplications()) {
        for (const auto windowClass : row.windowClasses) {
            if (!windowClass.empty()) {
                classes.emplace_back(windowClass, row.displayName);
            }
        }
    }
    EXPECT_THAT(
        classes,
        ElementsAre(Pair("google-chrome", "Chrome"), Pair("libreoffice-writer", "LibreOffice Writer"),
                    Pair("libreoffice", "LibreOffice Writer"), Pair("libreoffice-startcenter", "LibreOffice Writer"),
                    Pair("soffice", "LibreOffice Writer"), Pair("soffice.bin", "LibreOffice Writer"),
                    Pair("libreoffice-calc", "LibreOffice Calc"), Pair("libreoffice-impress", "LibreOffice Impress"),
                    Pair("libreoffice-draw", "LibreOffice Draw"), Pair("chromium", "Chromium"),
                    Pair("chromium-browser", "Chromium"), Pair("google-chrome-beta", "Chrome Beta"),
                    Pair("google-chrome-unstable", "Chrome Dev"), Pair("microsoft-edge", "Edge"),
                    Pair("microsoft-edge-beta", "Edge Beta"), Pair("microsoft-edge-dev", "Edge Dev"),
                    Pair("brave-browser", "Brave"), Pair("brave-browser-beta", "Brave Beta"),
                    Pair("brave-browser-nightly", "Brave Nightly"), Pair("vivaldi-stable", "Vivaldi"),
                    Pair("opera", "Opera"), Pair("firefox", "Firefox"), Pair("firefox-esr", "Firefox")));
}

TEST(SupportedApplication, TheTitleOfAWindowNamesTheProgram) {
    const auto& writer = *supportedApplication("org.libreoffice.script");
    const auto programOf = [&](std::string_view title) { return programOfWindow(writer, title).displayName; };
    EXPECT_EQ(programOf("budget.ods - LibreOffice Calc"), "LibreOffice Calc");
    EXPECT_EQ(programOf("talk.odp — LibreOffice Impress"), "LibreOffice Impress");
    EXPECT_EQ(programOf("plan.odg - LibreOffice Draw"), "LibreOffice Draw");
    EXPECT_EQ(programOf("LibreOffice Calc tutorial.odt - LibreOffice Writer"), "LibreOffice Writer");
    EXPECT_EQ(programOf("\u202Bbudget.ods - LibreOffice Calc\u202C"), "LibreOffice Calc");
    EXPECT_EQ(programOf("Without a name"), "LibreOffice Writer");
    EXPECT_EQ(programOf("About Chrome"), "LibreOffice Writer") << "of another application";
}

TEST(DirectionTestTargets, AreThoseOfTheDesktop) {
    const auto names = [](Desktop desktop) {
        std::vector<std::string> all;
        for (const auto& target : directionTestTargets(desktop)) {
            EXPECT_TRUE(hasDirectionCommands(target.bundleID)) << target.name;
            all.emplace_back(target.name);
        }
        return all;
    };
    const auto onMacOS = names(Desktop::macOS);
    const std::vector<std::string> seven(onMacOS.begin(), onMacOS.begin() + 7);
    EXPECT_THAT(seven, ElementsAre("Outlook", "Chrome", "Safari", "TextEdit", "Notes", "Mail", "Word"));
    EXPECT_THAT(onMacOS, Not(::testing::Contains("LibreOffice Calc"))) << "one application with Writer";
    EXPECT_THAT(names(Desktop::linuxDesktop),
                ElementsAre("Chrome", "LibreOffice Writer", "Chromium", "Chrome Beta", "Chrome Dev", "Edge",
                            "Edge Beta", "Edge Dev", "Brave", "Brave Beta", "Brave Nightly", "Vivaldi", "Opera",
                            "Firefox"));
}

} // namespace
} // namespace quillane::core
