// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// The applications in which direction commands work. One more is one more row, see docs/add-an-application.md; which of
// the rows have been tried, and in which languages, is in docs/applications.md.

#include "core/direction/SupportedApplication.hpp"

#include "core/direction/EditorContexts.hpp"
#include "core/localization/Texts.hpp"
#include "core/support/Text.hpp"

#include <algorithm>

namespace quillane::core {

namespace {

using enum DirectionManner;

/// Chromium 156: IDS_CONTENT_CONTEXT_WRITING_DIRECTION_MENU, _RTL and _LTR in the packages of its translations. In
/// right-to-left languages it shows each of them behind a RIGHT-TO-LEFT MARK.
constexpr DirectionLabels chromiumLabels{
    .rightToLeft = {.english = "Right to Left",
                    .hebrew = "מימין לשמאל",
                    .arabic = "من اليمين لليسار",
                    .persian = "راست به چپ",
                    .urdu = "دائیں سے بائیں",
                    .french = "De droite à gauche",
                    .german = "Linksläufig",
                    .russian = "Справа налево",
                    .spanish = "De derecha a izquierda"},
    .leftToRight = {.english = "Left to Right",
                    .hebrew = "משמאל לימין",
                    .arabic = "من اليسار لليمين",
                    .persian = "چپ به راست",
                    .urdu = "بائیں سے دائیں",
                    .french = "De gauche à droite",
                    .german = "Rechtsläufig",
                    .russian = "Слева направо",
                    .spanish = "De izquierda a derecha"},
    .menu = {.english = "Writing Direction",
             .british = "Writing direction",
             .hebrew = "כיוון כתיבה",
             .arabic = "اتجاه الكتابة",
             .persian = "جهت نوشتن",
             .urdu = "تحریر کا ڈائریکشن",
             .french = "Sens de l'écriture",
             .german = "Schreibrichtung",
             .russian = "Направление письма",
             .spanish = "Sentido de la escritura"},
};

/// LibreOffice 7.4: the labels of .uno:ParaRightToLeft and .uno:ParaLeftToRight in the packages of its translations,
/// which has no Urdu.
constexpr DirectionLabels libreOfficeLabels{
    .rightToLeft = {.english = "Right-To-Left",
                    .hebrew = "מימין לשמאל",
                    .arabic = "من اليمين إلى اليسار",
                    .persian = "راست به چپ",
                    .french = "De droite à gauche",
                    .german = "Rechts-nach-links",
                    .russian = "Справа налево",
                    .spanish = "De derecha a izquierda"},
    .leftToRight = {.english = "Left-To-Right",
                    .hebrew = "משמאל לימין",
                    .arabic = "من اليسار إلى اليمين",
                    .persian = "چپ به راست",
                    .french = "De gauche à droite",
                    .german = "Links-nach-rechts",
                    .russian = "Слева направо",
                    .spanish = "De izquierda a derecha"},
};

/// Firefox 153 ESR: menu-edit-bidi-switch-text-direction and menu-edit in the packages of its translations. The command
/// swaps, so it is the same for both directions.
constexpr Labels firefoxCommand{.english = "Switch Text Direction",
                                .hebrew = "היפוך כיוון כתיבה",
                                .arabic = "اعكس اتجاه النص",
                                .persian = "تعویض جهت متن",
                                .urdu = "متن کی سمت بدلیں کریں",
                                .french = "Changer le sens du texte",
                                .german = "Textrichtung ändern",
                                .russian = "Переключить направление текста на странице",
                                .spanish = "Cambiar dirección del texto"};

constexpr DirectionLabels firefoxLabels{
    .rightToLeft = firefoxCommand,
    .leftToRight = firefoxCommand,
    .bar = {.english = "Edit",
            .hebrew = "עריכה",
            .arabic = "حرّر",
            .persian = "ویرایش",
            .urdu = "تدوین کریں",
            .french = "Édition",
            .german = "Bearbeiten",
            .russian = "Правка",
            .spanish = "Editar"},
};

// The makers of these publish no translations, so that only English is known.

/// Text views of AppKit, in whose menus the action of an item needs no language.
constexpr DirectionLabels appKitLabels{
    .rightToLeft = {.english = "Right to Left"},
    .leftToRight = {.english = "Left to Right"},
    .menu = {.english = "Writing Direction"},
    .identifiesActions = true,
};

/// Editable web content of WebKit.
constexpr DirectionLabels webKitLabels{
    .rightToLeft = {.english = "Right to Left"},
    .leftToRight = {.english = "Left to Right"},
    .menu = {.english = "Paragraph Direction"},
};

constexpr DirectionLabels outlookLabels{
    .rightToLeft = {.english = "Right to Left"},
    .leftToRight = {.english = "Left to Right"},
    .bar = {.english = "Formatting Toolbar"},
    .opener = {.english = "See more items"},
};

constexpr DirectionLabels wordLabels{
    .rightToLeft = {.english = "Right-to-Left"},
    .leftToRight = {.english = "Left-to-Right"},
    .bar = {.english = "ribbon"},
    .opener = {.english = "Home"},
};

constexpr SupportedApplication outlookSubject{.bundleID = "com.microsoft.Outlook",
                                              .displayName = "Outlook",
                                              .manner = contextMenu,
                                              .editor = EditorRule::subjectLine,
                                              .editorIdentifier = "subjectTextField",
                                              .labels = &appKitLabels,
                                              .placementHint = texts::placeCursorInOutlookSubject};

constexpr SupportedApplication mailSubject{.bundleID = "com.apple.mail",
                                           .displayName = "Mail",
                                           .manner = contextMenu,
                                           .editor = EditorRule::subjectLine,
                                           .editorIdentifier = MailEditorContext::subjectIdentifier,
                                           .labels = &appKitLabels,
                                           .placementHint = texts::placeCursorInMail};

using WindowClasses = std::array<std::string_view, 5>;

constexpr SupportedApplication chromium(std::string_view bundleID, std::string_view name,
                                        const WindowClasses& windowClasses = {}) {
    return {.bundleID = bundleID,
            .displayName = name,
            .manner = contextMenu,
            .editor = EditorRule::webField,
            .labels = &chromiumLabels,
            .placementHint = texts::placeCursorInWebsite,
            .buildsTreeOnDemand = true,
            .windowClasses = windowClasses};
}

constexpr SupportedApplication webKit(std::string_view bundleID, std::string_view name) {
    return {.bundleID = bundleID,
            .displayName = name,
            .manner = contextMenu,
            .editor = EditorRule::webField,
            .labels = &webKitLabels,
            .placementHint = texts::placeCursorInWebsite};
}

constexpr SupportedApplication firefox(std::string_view bundleID, std::string_view name,
                                       const WindowClasses& windowClasses = {}) {
    return {.bundleID = bundleID,
            .displayName = name,
            .manner = swapCommand,
            .editor = EditorRule::webField,
            .labels = &firefoxLabels,
            .placementHint = texts::placeCursorInWebsite,
            .windowClasses = windowClasses};
}

/// LibreOffice is one application of several programs. On X11 a window gets the class of its program when it has loaded
/// its document.
constexpr SupportedApplication libreOffice(std::string_view name, EditorRule editor, TextRow<0> hint,
                                           const WindowClasses& windowClasses) {
    return {.bundleID = "org.libreoffice.script",
            .displayName = name,
            .manner = libreOfficeToolbar,
            .editor = editor,
            .labels = &libreOfficeLabels,
            .placementHint = hint,
            .windowClasses = windowClasses};
}

constexpr std::array applications{
    SupportedApplication{.bundleID = "com.microsoft.Outlook",
                         .displayName = "Outlook",
                         .manner = outlookToolbar,
                         .editor = EditorRule::outlookMessage,
                         .labels = &outlookLabels,
                         .placementHint = texts::placeCursorInOutlook,
                         .subject = &outlookSubject},
    chromium("com.google.Chrome", "Chrome", {"google-chrome"}),
    webKit("com.apple.Safari", "Safari"),
    SupportedApplication{.bundleID = "com.apple.TextEdit",
                         .displayName = "TextEdit",
                         .manner = contextMenu,
                         .editor = EditorRule::document,
                         .editorIdentifier = "First Text View",
                         .labels = &appKitLabels,
                         .placementHint = texts::placeCursorInTextEdit},
    SupportedApplication{.bundleID = "com.apple.Notes",
                         .displayName = "Notes",
                         .manner = contextMenu,
                         .editor = EditorRule::document,
                         .editorIdentifier = "Note Body Text View",
                         .labels = &appKitLabels,
                         .placementHint = texts::placeCursorInNotes},
    SupportedApplication{.bundleID = "com.apple.mail",
                         .displayName = "Mail",
                         .manner = contextMenu,
                         .editor = EditorRule::mailMessage,
                         .labels = &webKitLabels,
                         .placementHint = texts::placeCursorInMail,
                         .subject = &mailSubject},
    SupportedApplication{.bundleID = "com.microsoft.Word",
                         .displayName = "Word",
                         .manner = wordRibbon,
                         .editor = EditorRule::wordPage,
                         .labels = &wordLabels,
                         .placementHint = texts::placeCursorInWord},
    libreOffice("LibreOffice Writer", EditorRule::officeText, texts::placeCursorInWriter,
                {"libreoffice-writer", "libreoffice", "libreoffice-startcenter", "soffice", "soffice.bin"}),
    libreOffice("LibreOffice Calc", EditorRule::officeCell, texts::selectCellInCalc, {"libreoffice-calc"}),
    libreOffice("LibreOffice Impress", EditorRule::officeText, texts::placeCursorInImpress, {"libreoffice-impress"}),
    libreOffice("LibreOffice Draw", EditorRule::officeText, texts::placeCursorInDraw, {"libreoffice-draw"}),
    chromium("org.chromium.Chromium", "Chromium", {"chromium", "chromium-browser"}),
    chromium("com.google.Chrome.beta", "Chrome Beta", {"google-chrome-beta"}),
    chromium("com.google.Chrome.dev", "Chrome Dev", {"google-chrome-unstable"}),
    chromium("com.google.Chrome.canary", "Chrome Canary"),
    chromium("com.microsoft.edgemac", "Edge", {"microsoft-edge"}),
    chromium("com.microsoft.edgemac.Beta", "Edge Beta", {"microsoft-edge-beta"}),
    chromium("com.microsoft.edgemac.Dev", "Edge Dev", {"microsoft-edge-dev"}),
    chromium("com.microsoft.edgemac.Canary", "Edge Canary"),
    chromium("com.brave.Browser", "Brave", {"brave-browser"}),
    chromium("com.brave.Browser.beta", "Brave Beta", {"brave-browser-beta"}),
    chromium("com.brave.Browser.nightly", "Brave Nightly", {"brave-browser-nightly"}),
    chromium("com.vivaldi.Vivaldi", "Vivaldi", {"vivaldi-stable"}),
    chromium("com.operasoftware.Opera", "Opera", {"opera"}),
    chromium("com.operasoftware.OperaNext", "Opera Beta"),
    chromium("com.operasoftware.OperaDeveloper", "Opera Developer"),
    chromium("com.operasoftware.OperaGX", "Opera GX"),
    chromium("company.thebrowser.Browser", "Arc"),
    firefox("org.mozilla.firefox", "Firefox", {"firefox", "firefox-esr"}),
    firefox("org.mozilla.firefoxdeveloperedition", "Firefox Developer Edition"),
    firefox("org.mozilla.nightly", "Firefox Nightly"),
    webKit("com.apple.SafariTechnologyPreview", "Safari Technology Preview"),
    webKit("com.kagi.kagimacOS", "Orion"),
    webKit("com.duckduckgo.macos.browser", "DuckDuckGo"),
};

const SupportedApplication* orNone(const SupportedApplication* found) {
    return found != applications.end() ? found : nullptr;
}

} // namespace

const DirectionLabels& appKitDirectionLabels() {
    return appKitLabels;
}

std::span<const SupportedApplication> supportedApplications() {
    return applications;
}

const SupportedApplication* supportedApplication(std::string_view bundleID) {
    return orNone(std::ranges::find(applications, bundleID, &SupportedApplication::bundleID));
}

const SupportedApplication* applicationOfWindowClass(std::string_view windowClass) {
    return orNone(std::ranges::find_if(applications, [&](const SupportedApplication& application) {
        return !windowClass.empty() &&
               std::ranges::find(application.windowClasses, windowClass) != application.windowClasses.end();
    }));
}

const SupportedApplication& programOfWindow(const SupportedApplication& application, std::string_view windowTitle) {
    const auto visible = withoutDirectionMarks(windowTitle);
    const auto* found = orNone(std::ranges::find_if(applications, [&](const SupportedApplication& other) {
        return other.bundleID == application.bundleID && visible.ends_with(other.displayName);
    }));
    return found != nullptr ? *found : application;
}

} // namespace quillane::core
