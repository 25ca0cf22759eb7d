// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/accessibility/AtspiFacts.hpp"

#include <deque>
#include <list>

namespace quillane {

/// Looks for the focused object in the active window of an application that has not announced it: breadth first, among
/// visible objects, up to a limit. Editable text is preferred. It continues as answers arrive; nobody waits.
class AtspiFocusSearch {
public:
    /// Starts at once. `bus` must outlive the search.
    AtspiFocusSearch(BusConnection& bus, const std::string& application);

    AtspiFocusSearch(const AtspiFocusSearch&) = delete;
    AtspiFocusSearch& operator=(const AtspiFocusSearch&) = delete;

    [[nodiscard]] bool isRunning() const { return running_; }

    [[nodiscard]] BusConnection::Clock::time_point begin() const { return begin_; }

    /// The result, once it no longer runs.
    [[nodiscard]] const std::optional<AtspiObject>& result() const { return result_; }

private:
    struct Step {
        AtspiObject object;
        int depth; ///< 0 the application, 1 its windows
    };

    struct Visit {
        Step step;
        std::shared_ptr<AtspiFacts> facts;
    };

    void advance();
    void take(const Visit& visit);
    void finish(std::optional<AtspiObject> result);

    BusConnection& bus_;
    BusConnection::Clock::time_point begin_ = BusConnection::Clock::now();
    bool running_ = true;
    std::optional<AtspiObject> result_;
    std::deque<Step> waiting_;
    std::list<Visit> visits_; ///< asked, not answered yet
    std::size_t visited_ = 0;
};

} // namespace quillane
