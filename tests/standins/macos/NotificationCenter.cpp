// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/NotificationCenter.hpp"

#include "standins/macos/Mac.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillane::standin {

void NotificationCenter::remove(const void* observer) {
    std::erase_if(observers_, [observer](const auto& entry) { return entry.observer == observer; });
}

void NotificationCenter::post(const std::string& name) {
    Mac::current().post([this, name] {
        const auto observers = observers_;
        for (const auto& entry : observers) {
            const bool isThere = std::ranges::find(observers_, entry.observer, &Observer::observer) != observers_.end();
            if (isThere && entry.name == name && entry.behavior == CFNotificationSuspensionBehaviorDeliverImmediately) {
                entry.callback(CFNotificationCenterGetDistributedCenter(), const_cast<void*>(entry.observer),
                               string(name).get(), nullptr, nullptr);
            }
        }
    });
}

void NotificationCenter::settle() {
    EXPECT_TRUE(observers_.empty()) << "somebody still observes notifications";
    observers_.clear();
}

} // namespace quillane::standin

using quillane::standin::Mac;

extern "C" {

CFNotificationCenterRef CFNotificationCenterGetDistributedCenter() {
    return reinterpret_cast<CFNotificationCenterRef>(&Mac::current().notifications);
}

void CFNotificationCenterAddObserver(CFNotificationCenterRef /*center*/, const void* observer,
                                     CFNotificationCallback callBack, CFStringRef name, const void* /*object*/,
                                     CFNotificationSuspensionBehavior suspensionBehavior) {
    Mac::current().notifications.add({observer, callBack, quillane::standin::text(name), suspensionBehavior});
}

void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef /*center*/, const void* observer) {
    Mac::current().notifications.remove(observer);
}
}
