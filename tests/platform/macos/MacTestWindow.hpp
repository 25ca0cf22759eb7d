// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/macos/MacDriver.hpp"
#include "platform/macos/foundation/CFRef.hpp"

#include <QLineEdit>
#include <QWidget>

#import <Carbon/Carbon.h>

namespace quillane::testing {

/// What drivers share that need this program in front, with a window with a text field.
class MacWindowDriver : public MacDriver {
public:
    MacWindowDriver(const MacWindowDriver&) = delete;
    MacWindowDriver& operator=(const MacWindowDriver&) = delete;

protected:
    MacWindowDriver() {
        NSApp.activationPolicy = NSApplicationActivationPolicyRegular;
        window_.setGeometry(200, 200, 300, 200);
        field_.setGeometry(10, 10, 200, 30);
        show(window_);
        field_.setFocus();
    }

    ~MacWindowDriver() = default;

    void show(QWidget& window) {
        window.show();
        EXPECT_TRUE(waitUntil([&] {
            [NSApp activateIgnoringOtherApps:YES];
            window.activateWindow();
            return window.isActiveWindow();
        }));
    }

    QWidget window_;
    QLineEdit field_{&window_};
};

/// Selects an input source and puts the one that was selected back at the end.
class MacInputSource {
public:
    /// The source that types ASCII.
    MacInputSource()
        : MacInputSource(CFRef<TISInputSourceRef>::adopt(TISCopyCurrentASCIICapableKeyboardLayoutInputSource())) {}

    /// The enabled one of this language (BCP 47).
    explicit MacInputSource(CFStringRef language) : MacInputSource(enabled(language)) {}

    ~MacInputSource() { TISSelectInputSource(before_.get()); }

    MacInputSource(const MacInputSource&) = delete;
    MacInputSource& operator=(const MacInputSource&) = delete;

    explicit operator bool() const { return static_cast<bool>(selected_); }

    [[nodiscard]] TISInputSourceRef get() const { return selected_.get(); }

private:
    explicit MacInputSource(CFRef<TISInputSourceRef> source) : selected_(std::move(source)) {
        if (selected_) {
            TISSelectInputSource(selected_.get());
        }
    }

    static CFRef<TISInputSourceRef> enabled(CFStringRef language) {
        auto source = CFRef<TISInputSourceRef>::adopt(TISCopyInputSourceForLanguage(language));
        const auto flag =
            source ? cfCast<CFBooleanRef>(TISGetInputSourceProperty(source.get(), kTISPropertyInputSourceIsEnabled),
                                          CFBooleanGetTypeID())
                   : nullptr;
        return flag && CFBooleanGetValue(flag) ? source : CFRef<TISInputSourceRef>();
    }

    CFRef<TISInputSourceRef> before_ = CFRef<TISInputSourceRef>::adopt(TISCopyCurrentKeyboardInputSource());
    CFRef<TISInputSourceRef> selected_;
};

} // namespace quillane::testing
