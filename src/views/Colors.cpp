// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "views/Colors.hpp"

#include <QGuiApplication>
#include <QPalette>

#include <array>
#include <utility>

namespace quillane {

namespace {

constexpr auto rules = R"(
#settingsView, QScrollArea, #page, #pages { background: %window; color: %primary; }
QLabel { color: %primary; background: transparent; }
QLabel[role="secondary"] { color: %secondary; }
QLabel[role="warning"] { color: %warning; }
QLabel[role="good"] { color: %good; }
QPushButton, QComboBox, QToolButton[role="stepper"] {
    color: %primary; background: %field; border: 1px solid %outline; border-radius: 6px; padding: 4px 12px; }
QPushButton:hover, QComboBox:hover { background: %selection; }
QPushButton:pressed { background: %selection; }
QPushButton:disabled, QComboBox:disabled { color: %secondary; border-color: %hairline; background: %card; }
QPushButton[role="main"]:enabled { color: %onAmber; background: %amber; border-color: %amber; }
QPushButton:focus, QComboBox:focus, QToolButton[role="stepper"]:focus { border: 2px solid %amber; padding: 3px 11px; }
QPushButton[role="main"]:enabled:focus { border-color: %primary; }
QToolButton[role="stepper"] { padding: 0; min-width: 26px; min-height: 22px; }
QToolButton[role="stepper"]:focus { padding: 0; min-width: 24px; min-height: 20px; }
QToolButton[role="stepper"]:disabled { color: %hairline; border-color: %hairline; }
QComboBox { combobox-popup: 0; } /* the other kind of list is too low by the width of the border that the focus adds */
QComboBox::drop-down { border: none; width: 22px; }
QComboBox::down-arrow { image: url(:/symbols/chevron.up.chevron.down.svg); width: 14px; height: 14px; }
QComboBox QAbstractItemView, QMenu { color: %primary; background: %field;
    selection-color: %onAmber; selection-background-color: %amber; }
QMenu, QComboBox QAbstractItemView { border: 1px solid %outline; }
QMenu::item { padding: 4px 18px; }
QMenu::item:selected { color: %onAmber; background: %amber; }
QLineEdit, QTextEdit, QListWidget {
    color: %primary; background: %field; border: 1px solid %outline; border-radius: 6px; padding: 5px 8px;
    selection-color: %onAmber; selection-background-color: %amber; }
QLineEdit:focus, QTextEdit:focus, QListWidget:focus { border: 2px solid %amber; padding: 4px 7px; }
QScrollArea { border: none; }
QScrollBar:vertical { background: transparent; width: 10px; margin: 2px; }
QScrollBar::handle:vertical { background: %off; border-radius: 3px; min-height: 30px; }
QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
)";

} // namespace

core::Appearance appearanceOf(const QPalette& palette) {
    const auto lightness = [&](QPalette::ColorRole role) { return palette.color(QPalette::Active, role).lightness(); };
    return lightness(QPalette::Window) < lightness(QPalette::WindowText) ? core::Appearance::dark
                                                                         : core::Appearance::light;
}

core::Appearance currentAppearance() {
    return appearanceOf(QGuiApplication::palette());
}

QString styleSheet(const char* ruleText, core::Appearance appearance) {
    const auto& shades = core::brandPalette::shades(appearance);
    const std::array names{
        std::pair{"%window", shades.window},
        std::pair{"%card", shades.card},
        std::pair{"%field", shades.field},
        std::pair{"%hairline", shades.hairline},
        std::pair{"%outline", shades.outline},
        std::pair{"%secondary", shades.secondary},
        std::pair{"%selection", shades.selection},
        std::pair{"%off", shades.off},
        std::pair{"%warning", shades.warning},
        std::pair{"%good", shades.good},
        std::pair{"%onAmber", shades.onAmber},
        std::pair{"%amber", core::brandPalette::amber(appearance)},
        std::pair{"%primary", core::brandPalette::primary(appearance)},
    };
    auto sheet = QString::fromLatin1(ruleText);
    for (const auto& [name, color] : names) {
        sheet.replace(QLatin1String(name), qColor(color).name());
    }
    return sheet;
}

QString controlsStyleSheet(core::Appearance appearance) {
    return styleSheet(rules, appearance);
}

} // namespace quillane
