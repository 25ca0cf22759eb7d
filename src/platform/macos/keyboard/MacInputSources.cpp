// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/keyboard/MacInputSources.hpp"

#include "core/clipboard/AreaCaptureShortcut.hpp"
#include "core/support/Listeners.hpp"
#include "platform/macos/foundation/MacAutoreleasePool.hpp"
#include "platform/macos/foundation/MacCallback.hpp"
#include "platform/macos/foundation/MacCollections.hpp"
#include "platform/macos/foundation/MacStrings.hpp"
#include "platform/macos/keyboard/MacLayoutReader.hpp"

#include <ApplicationServices/ApplicationServices.h>
#include <Carbon/Carbon.h>

#include <algorithm>

namespace quillane {

namespace {

std::string stringProperty(TISInputSourceRef source, CFStringRef key) {
    return utf8(cfCast<CFStringRef>(TISGetInputSourceProperty(source, key), CFStringGetTypeID()));
}

std::string identifier(TISInputSourceRef source) {
    return stringProperty(source, kTISPropertyInputSourceID);
}

std::vector<std::string> languages(TISInputSourceRef source) {
    std::vector<std::string> result;
    const auto list =
        cfCast<CFArrayRef>(TISGetInputSourceProperty(source, kTISPropertyInputSourceLanguages), CFArrayGetTypeID());
    for (CFIndex i = 0; list && i < CFArrayGetCount(list); ++i) {
        if (const auto language = cfCast<CFStringRef>(CFArrayGetValueAtIndex(list, i), CFStringGetTypeID())) {
            result.push_back(utf8(language));
        }
    }
    return result;
}

/// The source as a value; none when it has no identifier, since it could then not be selected.
std::optional<InputSource> value(TISInputSourceRef source) {
    InputSource result{.id = identifier(source),
                       .localizedName = stringProperty(source, kTISPropertyLocalizedName),
                       .languages = languages(source)};
    if (result.id.empty()) {
        return std::nullopt;
    }
    if (result.localizedName.empty()) {
        result.localizedName = result.id;
    }
    return result;
}

/// The enabled, selectable sources as the system's objects; null when the system does not report them.
CFRef<CFArrayRef> enabledSources() {
    const auto filter = cfDictionary({
        {kTISPropertyInputSourceCategory, kTISCategoryKeyboardInputSource},
        {kTISPropertyInputSourceIsSelectCapable, kCFBooleanTrue},
        {kTISPropertyInputSourceIsEnabled, kCFBooleanTrue},
    });
    return CFRef<CFArrayRef>::adopt(TISCreateInputSourceList(filter.get(), false));
}

TISInputSourceRef sourceAt(const CFRef<CFArrayRef>& sources, CFIndex index) {
    return static_cast<TISInputSourceRef>(const_cast<void*>(CFArrayGetValueAtIndex(sources.get(), index)));
}

/// The first source with this identifier, which belongs to the list; null when there is none.
TISInputSourceRef find(const CFRef<CFArrayRef>& sources, std::string_view id) {
    for (CFIndex i = 0; sources && i < CFArrayGetCount(sources.get()); ++i) {
        if (identifier(sourceAt(sources, i)) == id) {
            return sourceAt(sources, i);
        }
    }
    return nullptr;
}

} // namespace

struct MacInputSources::Notices {
    core::Listeners<> listeners;

    /// Delivery must be immediate: AppKit holds distributed notifications back while the application is not active, and
    /// an agent hardly ever is.
    Notices() {
        for (CFStringRef name :
             {kTISNotifySelectedKeyboardInputSourceChanged, kTISNotifyEnabledKeyboardInputSourcesChanged}) {
            CFNotificationCenterAddObserver(CFNotificationCenterGetDistributedCenter(), this, &Notices::receive, name,
                                            nullptr, CFNotificationSuspensionBehaviorDeliverImmediately);
        }
    }

    ~Notices() { CFNotificationCenterRemoveEveryObserver(CFNotificationCenterGetDistributedCenter(), this); }

    Notices(const Notices&) = delete;
    Notices& operator=(const Notices&) = delete;

    static void receive(CFNotificationCenterRef, void* observer, CFNotificationName, const void*, CFDictionaryRef) {
        const AutoreleasePool pool;
        guarded([&] { static_cast<Notices*>(observer)->listeners.notify(); });
    }
};

MacInputSources::MacInputSources() : notices_(std::make_unique<Notices>()) {}

MacInputSources::~MacInputSources() = default;

std::optional<std::vector<InputSource>> MacInputSources::enabled() const {
    const AutoreleasePool pool;
    const auto sources = enabledSources();
    if (!sources) {
        return std::nullopt;
    }
    std::vector<InputSource> result;
    for (CFIndex i = 0; i < CFArrayGetCount(sources.get()); ++i) {
        auto source = value(sourceAt(sources, i));
        if (source && std::ranges::find(result, source->id, &InputSource::id) == result.end()) {
            result.push_back(std::move(*source));
        }
    }
    return result;
}

std::optional<InputSource> MacInputSources::current() const {
    const AutoreleasePool pool;
    const auto source = CFRef<TISInputSourceRef>::adopt(TISCopyCurrentKeyboardInputSource());
    return source ? value(source.get()) : std::nullopt;
}

std::optional<core::KeyboardLayout> MacInputSources::layout(std::string_view id) const {
    const AutoreleasePool pool;
    const auto sources = enabledSources();
    const auto source = find(sources, id);
    const auto data =
        source == nullptr
            ? nullptr
            : cfCast<CFDataRef>(TISGetInputSourceProperty(source, kTISPropertyUnicodeKeyLayoutData), CFDataGetTypeID());
    if (!data) {
        return std::nullopt;
    }
    return readMacLayout(*reinterpret_cast<const UCKeyboardLayout*>(CFDataGetBytePtr(data)));
}

bool MacInputSources::select(std::string_view id) {
    const AutoreleasePool pool;
    const auto sources = enabledSources();
    const auto source = find(sources, id);
    return source != nullptr && TISSelectInputSource(source) == noErr;
}

bool MacInputSources::switchedBySystemShortcut() const {
    return false;
}

bool MacInputSources::openSettings() {
    const AutoreleasePool pool;
    // Input sources and the system's shortcuts are on one page.
    const auto text = cfString(core::areaCaptureShortcut::settingsAddress);
    const auto address = CFRef<CFURLRef>::adopt(CFURLCreateWithString(kCFAllocatorDefault, text.get(), nullptr));
    return address && LSOpenCFURLRef(address.get(), nullptr) == noErr;
}

core::Subscription MacInputSources::onChanged(std::function<void()> callback) {
    return notices_->listeners.subscribe(std::move(callback));
}

} // namespace quillane
