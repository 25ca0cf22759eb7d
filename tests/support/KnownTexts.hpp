// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/AppTranslations.hpp"
#include "core/localization/Desktop.hpp"
#include "core/localization/LocalizedText.hpp"
#include "support/Popups.hpp"

#include <QAbstractButton>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QTextDocument>
#include <QTextEdit>
#include <QWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

namespace quillane::fakes {

/// All texts of the table in one language, to find texts on a view that come from elsewhere.
class KnownTexts {
public:
    /// Of the rows that come in pairs, those of the desktop, or of both without one.
    explicit KnownTexts(core::AppLanguage language, std::optional<core::Desktop> desktop = std::nullopt) {
        for (const auto& row : core::appTranslations::entries()) {
            const auto only = desktopOf(row);
            if (only && desktop && *only != *desktop) {
                continue;
            }
            const auto one = textIn(row, language);
            const auto text = withoutMarks(QString::fromUtf8(one.data(), static_cast<qsizetype>(one.size())));
            if (text.contains(QStringLiteral("%@"))) {
                auto pattern = QRegularExpression::escape(text);
                pattern.replace(QRegularExpression::escape(QStringLiteral("%@")), QStringLiteral(".+"));
                patterns_.emplace_back(QRegularExpression::anchoredPattern(pattern));
            } else {
                rows_.insert(text);
            }
        }
    }

    /// A text that is data: a name, a sign, an address.
    void allow(const QString& data) { data_.insert(withoutMarks(data)); }

    /// Data of a form, for example a speed.
    void allowPattern(const QString& pattern) { patterns_.emplace_back(QRegularExpression::anchoredPattern(pattern)); }

    [[nodiscard]] bool has(const QString& shown) const {
        const auto text = withoutMarks(shown);
        return text.isEmpty() || rows_.contains(text) || data_.contains(text) ||
               std::any_of(patterns_.begin(), patterns_.end(),
                           [&](const QRegularExpression& pattern) { return pattern.match(text).hasMatch(); });
    }

    /// Fails for a text that is not known.
    void expect(const QString& text, std::string_view where) {
        ++checked_;
        EXPECT_TRUE(has(text)) << where << ": " << text.toStdString();
    }

    /// Fails for every text on the widget itself that is not known.
    void check(const QWidget& widget) {
        const auto where = std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString();
        for (const auto& paragraph : widget.accessibleDescription().split(QLatin1Char('\n'))) {
            expect(paragraph, where);
        }
        expect(widget.toolTip(), where);
        if (widget.inherits("quillane::ChordView")) {
            for (const auto& key : widget.accessibleName().split(QStringLiteral(" + "))) {
                expect(key, where);
            }
        } else {
            expect(widget.accessibleName(), where);
        }
        if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
            QTextDocument plain;
            label->textFormat() == Qt::RichText ? plain.setHtml(label->text()) : plain.setPlainText(label->text());
            for (const auto& paragraph : plain.toPlainText().split(QLatin1Char('\n'))) {
                expect(withoutMnemonic(paragraph), where);
            }
        } else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
            expect(withoutMnemonic(button->text()), where);
        } else if (const auto* box = qobject_cast<const QComboBox*>(&widget)) {
            for (int i = 0; i < box->count(); ++i) {
                expect(box->itemText(i), where);
            }
        } else if (const auto* field = qobject_cast<const QLineEdit*>(&widget)) {
            expect(field->placeholderText(), where);
        } else if (const auto* text = qobject_cast<const QTextEdit*>(&widget)) {
            expect(text->placeholderText(), where);
        } else if (const auto* header = qobject_cast<const QHeaderView*>(&widget)) {
            for (int section = 0; section < header->count(); ++section) {
                expect(header->model()->headerData(section, header->orientation()).toString(), where);
            }
        } else if (const auto* menu = qobject_cast<const QMenu*>(&widget)) {
            checkMenu(*menu);
        }
    }

    /// Checks the rows of a menu, without the keys beside them.
    void checkMenu(const QMenu& menu) {
        for (const auto* action : menu.actions()) {
            expect(withoutMnemonic(action->text().section(QLatin1Char('\t'), 0, 0)), "menu");
        }
    }

    /// Checks a window with everything on it, and all of its context menus.
    void checkWindowAndMenus(QWidget& window) {
        checkWindow(window);
        openContextMenus(window, [this](const QMenu& menu) { checkMenu(menu); });
    }

    /// Checks a window with everything on it.
    void checkWindow(const QWidget& window) {
        expect(window.windowTitle(), "window title");
        check(window);
        for (const auto* widget : window.findChildren<QWidget*>()) {
            check(*widget);
        }
    }

    [[nodiscard]] int checked() const { return checked_; }

private:
    /// Views add isolates of their own, around the names of keys.
    [[nodiscard]] static QString withoutMarks(QString text) {
        static const QRegularExpression marks(QStringLiteral("[\u200E\u2066\u2068\u2069]"));
        return text.remove(marks);
    }

    [[nodiscard]] static QString withoutMnemonic(QString text) {
        constexpr QChar standIn(0xE000);
        return text.replace(QStringLiteral("&&"), standIn).remove(QLatin1Char('&')).replace(standIn, QLatin1Char('&'));
    }

    /// The desktop that alone has the row.
    [[nodiscard]] static std::optional<core::Desktop> desktopOf(const core::appTranslations::Entry& row) {
        static const std::map<std::string_view, core::Desktop> pairs{
#define QUILLANE_NAME(name, text)
#define QUILLANE_TEXT(name, hebrew, english, arabic)
#define QUILLANE_ON_MACOS(name, hebrew, english, arabic) {hebrew, core::Desktop::macOS},
#define QUILLANE_ON_LINUX(name, hebrew, english, arabic) {hebrew, core::Desktop::linuxDesktop},
#include "core/localization/AppTranslations.def"
#undef QUILLANE_TEXT
#undef QUILLANE_NAME
        };
        const auto found = pairs.find(row.key);
        return found != pairs.end() ? std::optional(found->second) : std::nullopt;
    }

    [[nodiscard]] static std::string_view textIn(const core::appTranslations::Entry& row, core::AppLanguage language) {
        switch (language) {
        case core::AppLanguage::hebrew:
            return row.key;
        case core::AppLanguage::english:
            return row.english;
        case core::AppLanguage::arabic:
            break;
        }
        return row.arabic;
    }

    std::set<QString> rows_;
    std::set<QString> data_;
    std::vector<QRegularExpression> patterns_;
    int checked_ = 0;
};

} // namespace quillane::fakes
