// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/AppDelegate.hpp"

#include "core/localization/Texts.hpp"

// What the command asks of the running agent.

namespace quillane {

namespace {

std::optional<core::LocalizedText> passwordNotice(SecureInput& secureInput, const Workspace& workspace) {
    const auto front = workspace.frontmostApplication();
    if (!front || secureInput.isKnown()) {
        return std::nullopt;
    }
    return core::texts::passwordFieldsUnrecognized(front->name);
}

} // namespace

ControlReply AppDelegate::handleControlRequest(const ControlRequest& request) {
    if (request.command == "open") {
        applicationShouldHandleReopen();
        return {};
    }
    const bool json = !request.arguments.empty() && request.arguments.front() == "--json";
    if (request.command == "doctor") {
        return doctor::report(diagnosisFacts(), json);
    }
    if (request.command == "status") {
        return {true, json ? toJson(statusReport()) : toText(statusReport())};
    }
    if (request.command == "pause" || request.command == "resume") {
        auto options = model_.options();
        options.paused = request.command == "pause";
        if (options != model_.options()) {
            model_.setOptions(options);
        }
        return {};
    }
    if (request.command == "history") {
        showClipboard();
        return {};
    }
    if (request.command == "capture") {
        return capture();
    }
    if (request.command == "share") {
        return share(request.arguments);
    }
    if (request.command == "quit") {
        environment_.terminate();
        return {};
    }
    return {false, "The running agent does not know the command '" + request.command + "'."};
}

ControlReply AppDelegate::capture() {
    if (platform_.areaCapture->means() == AreaCapture::Means::none) {
        return {false, core::LocalizedText(core::texts::areaCaptureNeedsX11).rendered(core::AppLanguage::english)};
    }
    startCapture(); // its outcome is shown to the user, who may still hold the keys of a shortcut
    return {};
}

ControlReply AppDelegate::share(const std::vector<std::string>& urls) {
    if (urls.empty()) {
        fileShare_.choose();
        return {};
    }
    const auto refusal = fileShare_.share(urls);
    if (!refusal) {
        return {};
    }
    fileShare_.showMessage(*refusal); // a file manager does not show what the command prints
    return {false, refusal->rendered(core::AppLanguage::english)};
}

StatusReport AppDelegate::statusReport() const {
    const auto front = platform_.workspace->frontmostApplication();
    return {.version = environment_.version,
            .language = preferences_.state().language,
            .options = model_.options(),
            .fixesWrongLayout = model_.fixesWrongLayout(),
            .runtime = model_.runtime(),
            .lastAction = model_.lastAction(),
            .directions = directions_,
            .clipboard = {.status = clipboard_.status(),
                          .entries = clipboard_.history().entries().size(),
                          .storageError = clipboard_.hasStorageError(),
                          .unread = clipboard_.isUnread(),
                          .usedElsewhere = clipboard_.isUsedElsewhere(),
                          .setAside = clipboard_.setAside().size(),
                          .hotKeyConflict = clipboard_.hasHotKeyConflict(),
                          .panelOpen = clipboardPanel_.isVisible()},
            .statusItemVisible = platform_.statusItem->isVisible(),
            .passwordNotice = passwordNotice(*platform_.secureInput, *platform_.workspace),
            .frontProcess = front ? std::optional(front->pid) : std::nullopt};
}

core::DiagnosisFacts AppDelegate::diagnosisFacts() {
    auto facts = doctor::programFacts(environment_.version, environment_.location, environment_.home);
    facts.respondent = core::Respondent::agent;
    facts.system = platform_.systemInspector->inspect();
    facts.session = doctor::sessionFacts(platform_, facts.respondent);
    facts.agent = {.options = model_.options(),
                   .fixesWrongLayout = model_.fixesWrongLayout(),
                   .keyboardAvailable = environment_.keyboardAvailable,
                   .tapMade = monitor_.hasTap(),
                   .tapEnabled = monitor_.isRunning(),
                   .keysSeen = monitor_.keyboardEventsObserved(),
                   .secureInput = platform_.secureInput->isEnabled(),
                   .focus = doctor::focusFacts(*platform_.accessibility, *platform_.workspace),
                   .recordsCopies = clipboard_.options().enabled,
                   .itemShown = platform_.statusItem->isVisible()};
    return facts;
}

} // namespace quillane
