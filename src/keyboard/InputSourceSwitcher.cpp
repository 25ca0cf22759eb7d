// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/InputSourceSwitcher.hpp"

#include "core/keyboard/InputSourceCycle.hpp"
#include "core/localization/Texts.hpp"

#include <algorithm>
#include <string>
#include <vector>

namespace quillane {

namespace texts = core::texts;

namespace {

core::ChordOutcome named(const InputSource& source) {
    return {texts::keyboardLanguage(source.localizedName), core::SelectedSource{source.localizedName}};
}

} // namespace

void InputSourceSwitcher::switchToNext() {
    const auto outcome = switched();
    if (report) {
        report(outcome);
    }
}

core::ChordOutcome InputSourceSwitcher::switched() {
    const auto sources = sources_.enabled();
    if (!sources) {
        return texts::couldNotReadKeyboardLanguages;
    }
    const auto current = sources_.current();
    if (sources_.switchedBySystemShortcut()) {
        return current ? named(*current) : core::ChordOutcome(texts::couldNotReadKeyboardLanguages);
    }
    std::vector<std::string> ids;
    std::ranges::transform(*sources, std::back_inserter(ids), &InputSource::id);
    const auto next = core::inputSourceCycle::nextID(current ? current->id : std::string(), ids);
    if (!next) {
        return texts::enableTwoKeyboardLanguages;
    }
    if (!sources_.select(*next)) {
        return texts::couldNotSwitchKeyboardLanguage.on(desktop_);
    }
    // Read again: the system may have chosen another one, and the user should see that one.
    return named(sources_.current().value_or(*std::ranges::find(*sources, *next, &InputSource::id)));
}

} // namespace quillane
