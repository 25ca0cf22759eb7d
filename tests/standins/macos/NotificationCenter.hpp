// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <vector>

namespace quillane::standin {

/// The distributed notification center.
class NotificationCenter {
public:
    struct Observer {
        const void* observer;
        CFNotificationCallback callback;
        std::string name;
        CFNotificationSuspensionBehavior behavior;
    };

    void add(Observer observer) { observers_.push_back(std::move(observer)); }

    void remove(const void* observer);

    /// Sends a notification from the main queue. The application is not active, as an agent's is not: notices are held
    /// back from all but those that want them at once.
    void post(const std::string& name);

    /// A failure of the test for observers that are left.
    void settle();

private:
    std::vector<Observer> observers_;
};

} // namespace quillane::standin
