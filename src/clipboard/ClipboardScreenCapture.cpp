// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardScreenCapture.hpp"

#include "core/keyboard/EventFlags.hpp"
#include "core/localization/Texts.hpp"
#include "platform/Platform.hpp"

#include <chrono>
#include <utility>

namespace quillane {

namespace texts = core::texts;

namespace {

using namespace std::chrono_literals;

constexpr int lastAttempt = 20;
constexpr auto betweenAttempts = 50ms;
constexpr auto modifiers = core::flags::shift | core::flags::control | core::flags::option | core::flags::command;

} // namespace

ClipboardScreenCapture::ClipboardScreenCapture(const Platform& platform, std::function<core::AppLanguage()> language)
    : platform_(platform), language_(std::move(language)) {}

void ClipboardScreenCapture::start() {
    ++operation_;
    attempt(0);
}

void ClipboardScreenCapture::attempt(int number) {
    if ((platform_.keyEvents->currentFlags() & modifiers) == 0) {
        begin();
        return;
    }
    if (number == lastAttempt) {
        announce(texts::releaseModifierKeys);
        return;
    }
    platform_.mainQueue->postAfter(betweenAttempts,
                                   [this, alive = lifetime_.watch(), operation = operation_, next = number + 1] {
                                       if (alive && operation == operation_) {
                                           attempt(next);
                                       }
                                   });
}

void ClipboardScreenCapture::begin() {
    using Means = AreaCapture::Means;
    const auto means = platform_.areaCapture->means();
    if (means == Means::none) {
        announce(texts::areaCaptureNeedsX11);
        return;
    }
    const auto keptOut = [this, alive = lifetime_.watch()] {
        if (alive) {
            announce(texts::areaCaptureKeptOut);
        }
    };
    if (!platform_.permissions->isGranted(core::MacPermission::accessibility) ||
        !platform_.areaCapture->start(language_(), keptOut)) {
        announce(texts::couldNotStartAreaCapture);
        return;
    }
    if (means == Means::ownSelection) {
        announce(texts::selectAreaToCapture);
        return;
    }
    announce(texts::selectAreaOrCheckShortcut);
    if (offer) {
        offer(texts::openKeyboardSettings, [this, alive = lifetime_.watch()] {
            if (alive) {
                platform_.areaCapture->openShortcutSettings();
            }
        });
    }
}

void ClipboardScreenCapture::announce(const core::LocalizedText& text) const {
    if (report) {
        report(text);
    }
}

} // namespace quillane
