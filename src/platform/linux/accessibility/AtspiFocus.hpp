// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "core/support/Listeners.hpp"
#include "core/support/Subscription.hpp"
#include "platform/linux/accessibility/AtspiFacts.hpp"
#include "platform/linux/accessibility/AtspiFocusSearch.hpp"

#include <map>

#include <sys/types.h>

namespace quillane {

class AccessibilityBus;

/// Knows the applications on the accessibility bus and the focused object of each, from their events. Only a focus that
/// is older than the agent, or that an application did not announce, is searched for. Main thread only; nothing waits
/// and no foreign code is called.
class AtspiFocus {
public:
    explicit AtspiFocus(AccessibilityBus& bus);

    /// The bus name of an application; none when it is not on the bus.
    [[nodiscard]] std::optional<std::string> applicationOf(pid_t pid) const;
    [[nodiscard]] std::optional<pid_t> processOf(const std::string& application) const;

    struct Focus {
        AtspiObject object;
        std::uint64_t change; ///< another number whenever the application's focus has moved
    };

    /// The object that the application last announced as focused; it may have lost the focus since.
    [[nodiscard]] std::optional<Focus> in(const std::string& application) const;

    /// The focus of an application has moved to another object. The handler is called while a signal is processed,
    /// possibly inside a wait: it must only send requests.
    core::Subscription onMoved(std::function<void(BusConnection&, const Focus&)> handler) {
        return moves_.subscribe(std::move(handler));
    }

    /// Whether the object was the last one announced as focused and has not lost the focus since, by announcement or
    /// observation.
    [[nodiscard]] bool holds(const AtspiObject& object) const;

    /// Whether the object that was announced as focused counts as focused, given whether it has the state and when that
    /// was requested. One that has just lost the state still counts: GTK takes it from the focused text while somebody
    /// holds the keyboard, which the event tap does for each key whose text it may replace. After that moment the
    /// object is forgotten.
    [[nodiscard]] bool confirm(const AtspiObject& object, bool hasState, BusConnection::Clock::time_point asked);

    /// Records that the object does not have the focus after all.
    void forget(const AtspiObject& object);

    /// Records that the object still has the focus, whatever its application announced last.
    void restore(const AtspiObject& object);

    /// Searches an application whose focus is not known. When nothing is found, it is not searched again for a second,
    /// then two, and so on up to half a minute, or until it announces its focus. Returns the running search, or
    /// nullptr.
    const AtspiFocusSearch* search(const std::string& application);

    /// Lets an application whose focus is not known be searched at the next question, for it may have made its tree.
    void searchAgain(const std::string& application);

private:
    struct Program {
        std::optional<pid_t> pid;
        std::optional<AtspiObject> focused;
        BusConnection::Clock::time_point announced{};              ///< when its focus was last announced
        std::optional<BusConnection::Clock::time_point> lostSince; ///< it has lost it, by announcement or observation
        std::uint64_t change = 0;
        std::unique_ptr<AtspiFocusSearch> search;
        std::chrono::seconds interval{1}; ///< between searches
    };

    void watch(BusConnection& bus);
    void handle(BusConnection& bus, DBusMessage& signal);
    void noteOwner(BusConnection& bus, DBusMessage& signal);
    void noteFocus(BusConnection& bus, DBusMessage& signal);
    void learn(BusConnection& bus, const std::string& application, bool searches);
    static void takeResult(Program& program);
    static bool isGone(const Program& program);

    AccessibilityBus& bus_;
    mutable std::map<std::string, Program, std::less<>> programs_; ///< by bus name
    std::uint64_t changes_ = 0;
    core::Listeners<BusConnection&, const Focus&> moves_;
    core::Lifetime lifetime_;
    core::Subscription openings_;
    core::Subscription losses_;
    core::Subscription signals_;
};

} // namespace quillane
