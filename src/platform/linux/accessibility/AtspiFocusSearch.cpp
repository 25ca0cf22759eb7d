// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/AtspiFocusSearch.hpp"

namespace quillane {

namespace {

constexpr std::size_t maximumVisits = 1500;
constexpr std::size_t maximumAtOnce = 16;
constexpr std::size_t maximumChildren = 200; // of one object

} // namespace

AtspiFocusSearch::AtspiFocusSearch(BusConnection& bus, const std::string& application) : bus_(bus) {
    waiting_.push_back({{application, atspiRootPath}, 0});
    advance();
}

void AtspiFocusSearch::advance() {
    for (auto visit = visits_.begin(); running_ && visit != visits_.end();) {
        if (visit->facts->isComplete()) {
            take(*visit);
            visit = visits_.erase(visit);
        } else {
            ++visit;
        }
    }
    while (running_ && !waiting_.empty() && visits_.size() < maximumAtOnce && visited_ < maximumVisits) {
        auto step = std::move(waiting_.front());
        waiting_.pop_front();
        ++visited_;
        auto facts = requestFacts(bus_, step.object, AtspiFact::states | AtspiFact::children, [this] { advance(); });
        visits_.push_back({std::move(step), std::move(facts)});
    }
    if (running_ && visits_.empty()) {
        finish(result_);
    }
}

void AtspiFocusSearch::take(const Visit& visit) {
    const auto& facts = *visit.facts;
    const int depth = visit.step.depth;
    if (depth > 0 && facts.is(AtspiState::focused)) {
        // Some toolkits give the state to a container or a tab as well: editable text takes precedence.
        if (facts.is(AtspiState::editable)) {
            finish(visit.step.object);
            return;
        }
        result_ = result_ ? result_ : visit.step.object;
    }
    const bool goesOn = depth == 0 || facts.is(depth == 1 ? AtspiState::active : AtspiState::showing);
    std::size_t taken = 0;
    for (const auto& child : facts.children) {
        if (goesOn && child.bus == visit.step.object.bus && taken < maximumChildren) {
            waiting_.push_back({child, depth + 1});
            ++taken;
        }
    }
}

void AtspiFocusSearch::finish(std::optional<AtspiObject> result) {
    running_ = false;
    result_ = std::move(result);
    waiting_.clear();
}

} // namespace quillane
