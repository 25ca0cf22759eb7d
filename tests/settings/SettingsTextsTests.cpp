// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsTest.hpp"

#include "core/direction/SupportedApplication.hpp"
#include "core/fileshare/FileShareServer.hpp"
#include "core/localization/AppTranslations.hpp"
#include "settings/SettingsView.hpp"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTextDocument>
#include <QTextEdit>

#include <set>

namespace quillane {
namespace {

using core::AppLanguage;

/// Every text of the window in one language, and whether the table has it there.
class SettingsTextsTests : public SettingsTest, public testing::WithParamInterface<AppLanguage> {
protected:
    [[nodiscard]] static std::string_view textIn(const core::AppTranslations::Entry& row, AppLanguage language) {
        switch (language) {
        case AppLanguage::hebrew:
            return row.key;
        case AppLanguage::english:
            return row.english;
        case AppLanguage::arabic:
            break;
        }
        return row.arabic;
    }

    void readTable(AppLanguage language) {
        for (const auto& row : core::AppTranslations::entries()) {
            const auto text =
                QString::fromUtf8(textIn(row, language).data(), static_cast<qsizetype>(textIn(row, language).size()));
            if (text.contains(QStringLiteral("%@"))) {
                auto pattern = QRegularExpression::escape(text);
                pattern.replace(QRegularExpression::escape(QStringLiteral("%@")), QStringLiteral(".+"));
                patterns_.emplace_back(QRegularExpression::anchoredPattern(pattern));
            } else {
                rows_.insert(text);
            }
        }
    }

    [[nodiscard]] bool isKnown(const QString& text) const {
        if (text.isEmpty() || rows_.contains(text) || data_.contains(text)) {
            return true;
        }
        return std::any_of(patterns_.begin(), patterns_.end(),
                           [&](const QRegularExpression& pattern) { return pattern.match(text).hasMatch(); });
    }

    void check(const QWidget& widget) {
        const auto expectKnown = [&](const QString& text) {
            ++checked_;
            EXPECT_TRUE(isKnown(text)) << widget.metaObject()->className() << " " << widget.objectName().toStdString()
                                       << ": " << text.toStdString();
        };
        expectKnown(widget.accessibleDescription());
        expectKnown(widget.toolTip());
        if (widget.inherits("quillane::ChordView")) {
            for (const auto& key : widget.accessibleName().split(QStringLiteral(" + "))) {
                expectKnown(key);
            }
        } else {
            expectKnown(widget.accessibleName());
        }
        if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
            QTextDocument plain;
            label->textFormat() == Qt::RichText ? plain.setHtml(label->text()) : plain.setPlainText(label->text());
            expectKnown(plain.toPlainText());
        } else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
            expectKnown(button->text());
        } else if (const auto* box = qobject_cast<const QComboBox*>(&widget)) {
            for (int i = 0; i < box->count(); ++i) {
                expectKnown(box->itemText(i));
            }
        } else if (const auto* field = qobject_cast<const QLineEdit*>(&widget)) {
            expectKnown(field->placeholderText());
        } else if (const auto* text = qobject_cast<const QTextEdit*>(&widget)) {
            expectKnown(text->placeholderText());
        }
    }

    /// Texts that are data: names of languages, signs, hosts and what applications are called.
    std::set<QString> data_{"English",
                            "עברית",
                            "العربية",
                            "−",
                            "+",
                            "Editor",
                            "com.example.editor",
                            "ABC",
                            QString::fromStdString(core::FileShareServer::standard().host())};
    int checked_ = 0;

    void readNames() {
        for (const auto& application : core::supportedApplications) {
            data_.insert(QString::fromUtf8(application.displayName.data()));
        }
    }

private:
    std::set<QString> rows_;
    std::vector<QRegularExpression> patterns_;
};

TEST_P(SettingsTextsTests, EveryTextHasARowInTheTable) {
    readTable(GetParam());
    readNames();
    preferences.choose(GetParam());
    clipboardOptions.ignoredApps = {"com.example.editor"};
    shortcutTaken = true;
    historyIsUnsaved = true;
    auto runtime = model.runtime();
    runtime.inputName = "ABC";
    runtime.runtimeStatus = core::texts::shortcutsActive;
    model.setRuntime(runtime);
    desktop.withPermissions({core::MacPermission::inputMonitoring});
    permissions.refresh();
    permissions.copyPath();
    model.refreshKeepAwake();
    EXPECT_TRUE(isKnown(window().windowTitle()));
    for (const auto page : core::allSettingsPages) {
        present(page);
        for (const auto* widget : window().findChildren<QWidget*>()) {
            check(*widget);
        }
    }
    EXPECT_GT(checked_, 500);
}

INSTANTIATE_TEST_SUITE_P(In, SettingsTextsTests, testing::ValuesIn(core::allLanguages),
                         [](const auto& parameter) { return std::string(core::languageID(parameter.param)); });

} // namespace
} // namespace quillane
