// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "settings/SettingsServices.hpp"

#include <QWidget>

#include <functional>
#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace quillane {

class Card;
class FeatureRow;

/// A page of the settings window. Its widgets are made once; everything on them that depends on the language, the
/// appearance or a model is set by a binding, and `refresh` runs all of them.
class SettingsPageView : public QWidget {
    Q_OBJECT

public:
    explicit SettingsPageView(const SettingsServices& services);

    /// Shows the current state of the models, in the current language and appearance.
    void refresh();

protected:
    static constexpr int headingSpace = 14; ///< above a heading

    using Text = std::function<core::LocalizedText()>;
    using Binding = std::function<void(core::AppLanguage language)>;

    struct Feature {
        std::string symbol;
        core::LocalizedText title;
        core::LocalizedText explanation;
        std::function<bool()> isOn;
        std::function<void(bool)> set;
        std::function<bool()> isEnabled = {}; ///< absent means always
    };

    [[nodiscard]] const SettingsServices& services() const { return services_; }

    /// A card at the end of the page, under a heading.
    Card& addCard(const core::LocalizedText& heading);

    /// A card without a heading.
    Card& addCard();

    /// A text at the end of the page, in the colour of explanations.
    QLabel& addNote(const core::LocalizedText& text);

    /// A row with a switch.
    FeatureRow& addFeature(Card& card, Feature feature);

    /// A row without a control.
    FeatureRow& addRow(Card& card, const std::string& symbol, const Text& title, const Text& explanation = {},
                       std::function<bool()> highlighted = {});

    /// A row that says whether the keyboard monitor runs and receives keys.
    FeatureRow& addKeyboardCheck(Card& card);

    /// A button with a text.
    [[nodiscard]] QPushButton* button(const core::LocalizedText& text, std::function<void()> action);

    void addWidget(QWidget* widget);
    void addStretch();

    void bind(Binding binding) { bindings_.push_back(std::move(binding)); }

    void bindText(QLabel* label, Text text);

    /// Shows the widget exactly while the condition holds.
    void bindVisible(QWidget* widget, std::function<bool()> condition);

    /// A symbol in a colour that stands out from its tile.
    [[nodiscard]] QIcon tileSymbol(const std::string& name, bool highlighted) const;

private:
    Card& appendCard();

    const SettingsServices& services_;
    QVBoxLayout* column_;
    std::vector<Binding> bindings_;
};

} // namespace quillane
