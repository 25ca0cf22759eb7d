// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/InputSources.hpp"

#include "standins/macos/Mac.hpp"

#include <algorithm>

namespace quillane::standin {

namespace {

class Source final : public Object {
public:
    explicit Source(InputSourceList::Properties properties) : properties_(std::move(properties)) {}

    [[nodiscard]] CFTypeID type() const override { return 30; }

    [[nodiscard]] std::string describe() const override { return "an input source"; }

    /// Belongs to the source; null when it has none.
    [[nodiscard]] CFTypeRef property(CFStringRef key) const {
        if (CFEqual(key, kTISPropertyInputSourceIsEnabled) != 0) {
            return properties_.isEnabled ? kCFBooleanTrue : kCFBooleanFalse;
        }
        if (CFEqual(key, kTISPropertyInputSourceIsSelectCapable) != 0) {
            return properties_.isSelectCapable ? kCFBooleanTrue : kCFBooleanFalse;
        }
        const auto found = std::ranges::find(properties_.values, key, [](const auto& entry) { return entry.first; });
        return found == properties_.values.end() ? nullptr : found->second.get();
    }

    [[nodiscard]] bool canBeSelected() const { return properties_.isEnabled && properties_.isSelectCapable; }

private:
    void dispose() override { properties_.values.clear(); }

    InputSourceList::Properties properties_;
};

} // namespace

InputSourceList::Properties InputSourceList::keyboard(std::string_view id, std::string_view name,
                                                      std::vector<Value> languages) {
    return {.values = {{kTISPropertyInputSourceCategory, borrowed(kTISCategoryKeyboardInputSource)},
                       {kTISPropertyInputSourceID, value(id)},
                       {kTISPropertyLocalizedName, value(name)},
                       {kTISPropertyInputSourceLanguages, list(languages)}}};
}

void InputSourceList::add(Properties properties) {
    sources_.push_back(Value::adopt(reference<CFTypeRef>(make<Source>(std::move(properties)))));
    if (!current_) {
        current_ = sources_.back();
    }
}

CFArrayRef InputSourceList::matching(CFDictionaryRef filter) const {
    if (!isAnswering) {
        return nullptr;
    }
    const auto count = static_cast<std::size_t>(CFDictionaryGetCount(filter));
    std::vector<const void*> keys(count);
    std::vector<const void*> wanted(count);
    CFDictionaryGetKeysAndValues(filter, keys.data(), wanted.data());
    std::vector<Value> found;
    std::ranges::copy_if(sources_, std::back_inserter(found), [&](const Value& source) {
        for (std::size_t i = 0; i < count; ++i) {
            const auto property = as<Source>(source.get()).property(static_cast<CFStringRef>(keys[i]));
            if (property == nullptr || CFEqual(property, wanted[i]) == 0) {
                return false;
            }
        }
        return true;
    });
    return static_cast<CFArrayRef>(CFRetain(list(found).get()));
}

TISInputSourceRef InputSourceList::copyCurrent() const {
    return isAnswering && current_ ? reference<TISInputSourceRef>(object(CFRetain(current_.get()))) : nullptr;
}

bool InputSourceList::select(TISInputSourceRef source) {
    if (refusesAll || !as<Source>(source).canBeSelected()) {
        return false;
    }
    if (current_.get() != source) {
        current_ = borrowed(source);
        Mac::current().notifications.post(text(kTISNotifySelectedKeyboardInputSourceChanged));
    }
    return true;
}

void InputSourceList::selectFromOutside(const std::string& id) {
    for (const auto& source : std::vector<Value>(sources_)) {
        const auto property = as<Source>(source.get()).property(kTISPropertyInputSourceID);
        if (property != nullptr && text(property) == id) {
            select(reference<TISInputSourceRef>(object(source.get())));
        }
    }
}

void InputSourceList::settle() {
    sources_.clear();
    current_ = {};
}

} // namespace quillane::standin

using quillane::standin::Mac;

extern "C" {

const CFStringRef kTISPropertyInputSourceCategory = CFSTR("TISPropertyInputSourceCategory");
const CFStringRef kTISPropertyInputSourceIsSelectCapable = CFSTR("TISPropertyInputSourceIsSelectCapable");
const CFStringRef kTISPropertyInputSourceIsEnabled = CFSTR("TISPropertyInputSourceIsEnabled");
const CFStringRef kTISPropertyInputSourceID = CFSTR("TISPropertyInputSourceID");
const CFStringRef kTISPropertyLocalizedName = CFSTR("TISPropertyLocalizedName");
const CFStringRef kTISPropertyInputSourceLanguages = CFSTR("TISPropertyInputSourceLanguages");
const CFStringRef kTISPropertyUnicodeKeyLayoutData = CFSTR("TISPropertyUnicodeKeyLayoutData");
const CFStringRef kTISCategoryKeyboardInputSource = CFSTR("TISCategoryKeyboardInputSource");
const CFStringRef kTISNotifySelectedKeyboardInputSourceChanged =
    CFSTR("com.apple.Carbon.TISNotifySelectedKeyboardInputSourceChanged");
const CFStringRef kTISNotifyEnabledKeyboardInputSourcesChanged =
    CFSTR("com.apple.Carbon.TISNotifyEnabledKeyboardInputSourcesChanged");

CFArrayRef TISCreateInputSourceList(CFDictionaryRef properties, Boolean /*includeAllInstalled*/) {
    return Mac::current().inputSources.matching(properties);
}

TISInputSourceRef TISCopyCurrentKeyboardInputSource() {
    return Mac::current().inputSources.copyCurrent();
}

void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key) {
    return const_cast<void*>(quillane::standin::as<quillane::standin::Source>(source).property(key));
}

OSStatus TISSelectInputSource(TISInputSourceRef source) {
    return Mac::current().inputSources.select(source) ? noErr : paramErr;
}
}
