// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/DirectionCommands.hpp"

#include "core/direction/DirectionTarget.hpp"
#include "core/localization/Texts.hpp"

#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto timeToCome = 250ms; // to the front

} // namespace

DirectionCommands::DirectionCommands(DirectionServices services, std::function<bool()> canApply, DirectionReport report)
    : services_(services),
      canApply_(std::move(canApply)),
      report_(std::move(report)),
      adapter_(services, report_),
      browserAdapter_(services, report_),
      wordAdapter_(services, report_),
      libreOfficeAdapter_(services, report_),
      firefoxAdapter_(services, report_),
      menuBarAdapter_(services, report_) {}

void DirectionCommands::apply(core::WritingDirection direction) {
    const auto front = canApply_() ? services_.workspace.frontmostApplication() : std::nullopt;
    if (!front) {
        return;
    }
    if (menuBarAdapter_.serves(*front)) {
        menuBarAdapter_.apply(direction);
        return;
    }
    if (!front->bundleID) {
        return;
    }
    if (const auto* application = core::supportedApplication(*front->bundleID)) {
        adapterFor(application->manner).apply(direction, *application);
    }
}

DirectionAdapter& DirectionCommands::adapterFor(core::DirectionManner manner) {
    switch (manner) {
    case core::DirectionManner::outlookToolbar:
        return adapter_;
    case core::DirectionManner::contextMenu:
        return browserAdapter_;
    case core::DirectionManner::wordRibbon:
        return wordAdapter_;
    case core::DirectionManner::swapCommand:
        return firefoxAdapter_;
    case core::DirectionManner::libreOfficeToolbar:
        break;
    }
    return libreOfficeAdapter_;
}

void DirectionCommands::test(core::WritingDirection direction, const std::string& bundleID) {
    if (!canApply_()) {
        report_(core::texts::enableDirectionFeature);
        return;
    }
    const auto running = services_.workspace.runningApplications(bundleID);
    if (running.empty()) {
        report_(core::texts::openSelectedApp);
        return;
    }
    const auto pid = running.front().pid;
    services_.workspace.activateApplication(pid);
    services_.mainQueue.postAfter(timeToCome, [this, alive = lifetime_.watch(), direction, pid] {
        if (!alive) {
            return;
        }
        const auto front = services_.workspace.frontmostApplication();
        if (front && front->pid == pid) {
            apply(direction);
        }
    });
}

void DirectionCommands::cancelPending() {
    for (const auto manner : core::directionManners) {
        adapterFor(manner).cancelPending();
    }
}

void DirectionCommands::interrupt(core::UserInput input) {
    for (const auto manner : core::directionManners) {
        adapterFor(manner).interrupt(input);
    }
}

std::optional<std::string> DirectionCommands::target() const {
    const auto front = services_.workspace.frontmostApplication();
    return front && front->bundleID && core::hasDirectionCommands(*front->bundleID) ? front->bundleID : std::nullopt;
}

} // namespace quillane
