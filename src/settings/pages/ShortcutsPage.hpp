// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "settings/ChordView.hpp"
#include "settings/SettingsPageView.hpp"

namespace quillane {

/// The chords and what they do, drawn as keys.
class ShortcutsPage : public SettingsPageView {
    Q_OBJECT

public:
    explicit ShortcutsPage(const SettingsServices& services);

private:
    void addApplicationSources(Card& card);

    /// A row with one chord, or with two alternatives.
    void addChord(Card& card, const std::string& symbol, const core::LocalizedText& title,
                  const std::vector<std::vector<ChordKey>>& chords);
};

} // namespace quillane
