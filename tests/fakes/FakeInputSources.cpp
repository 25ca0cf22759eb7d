// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fakes/FakeInputSources.hpp"

#include <algorithm>
#include <utility>

namespace quillane::fakes {

std::optional<std::vector<InputSource>> FakeInputSources::enabled() const {
    return listReadable_ ? std::optional(sources_) : std::nullopt;
}

std::optional<InputSource> FakeInputSources::current() const {
    note(journal, "current input source");
    ++currentReadCount_;
    return currentReadable_ ? current_ : std::nullopt;
}

std::optional<core::KeyboardLayout> FakeInputSources::layout(std::string_view id) const {
    const bool isEnabled = std::ranges::find(sources_, id, &InputSource::id) != sources_.end();
    const auto found = layouts_.find(id);
    return isEnabled && found != layouts_.end() ? std::optional(found->second) : std::nullopt;
}

bool FakeInputSources::select(std::string_view id) {
    const auto found = std::ranges::find(sources_, id, &InputSource::id);
    if (refusesSelection_ || found == sources_.end()) {
        return false;
    }
    ++selectCount_;
    switchFromOutside(*found);
    return true;
}

core::Subscription FakeInputSources::onChanged(std::function<void()> callback) {
    note(journal, "onChanged of input sources");
    return changed_.subscribe(std::move(callback));
}

void FakeInputSources::setEnabled(std::vector<InputSource> sources) {
    sources_ = std::move(sources);
    current_ = sources_.empty() ? std::nullopt : std::optional(sources_.front());
    changed_.notify();
}

void FakeInputSources::switchFromOutside(InputSource source) {
    const bool changes = current_ != source;
    current_ = std::move(source);
    if (changes) {
        changed_.notify();
    }
}

} // namespace quillane::fakes
