// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "views/InterfaceLanguage.hpp"

#include "core/localization/AppTranslations.hpp"
#include "core/localization/Texts.hpp"
#include "views/Text.hpp"

#include <QEvent>
#include <QGuiApplication>
#include <QHash>
#include <QRegularExpression>
#include <QTranslator>

#include <array>
#include <string>
#include <string_view>

namespace quillane {

namespace texts = core::texts;

namespace {

constexpr std::array qtRows{
#define QUILLANE_TEXT(name, hebrew, english, arabic) std::string_view(hebrew),
#include "core/localization/texts/Qt.def"
#undef QUILLANE_TEXT
};

/// Rows of the rest of the program that equal texts of Qt.
constexpr std::array sharedRows{texts::undo.key,      texts::redo.key,   texts::cut.key,       texts::copy.key,
                                texts::paste.key,     texts::cancel.key, texts::selectAll.key, texts::close.key,
                                texts::keepFiles.key, texts::save.key};

QString qString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The table's form of a text of Qt, in lower case, because Qt versions differ in capitals.
QString tableForm(const QString& source) {
    static const QRegularExpression placeholder(QStringLiteral("%[0-9]"));
    auto text = source.simplified().toLower();
    return text.remove(QLatin1Char('&')).replace(placeholder, QStringLiteral("%@"));
}

/// A text of the table in Qt's form, with numbered placeholders and the blank that some texts end with.
QString qtForm(QString text, const QString& source) {
    const auto placeholder = QStringLiteral("%@");
    for (int number = 1; text.contains(placeholder); ++number) {
        text.replace(text.indexOf(placeholder), placeholder.size(), QStringLiteral("%%1").arg(number));
    }
    return source.endsWith(QLatin1Char(' ')) ? text + QLatin1Char(' ') : text;
}

} // namespace

class InterfaceLanguage::Translator : public QTranslator {
public:
    Translator() {
        for (const auto key : qtRows) {
            add(key);
        }
        for (const auto key : sharedRows) {
            add(key);
        }
    }

    void setLanguage(core::AppLanguage language) { language_ = language; }

    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(const char* context, const char* sourceText, const char* /*disambiguation*/,
                                    int /*n*/) const override {
        const bool namesKeys = std::string_view(context) == "QShortcut"; // as written on the keys
        if (language_ == core::AppLanguage::english || namesKeys || sourceText == nullptr) {
            return {}; // Qt's own text
        }
        const auto source = QString::fromUtf8(sourceText);
        const auto found = rows_.constFind(tableForm(source));
        if (found == rows_.constEnd()) {
            return {};
        }
        return qtForm(qString(language_ == core::AppLanguage::hebrew ? (*found)->key : (*found)->arabic), source);
    }

private:
    void add(std::string_view key) {
        const auto* entry = core::appTranslations::entry(key);
        rows_.insert(qString(entry->english).toLower(), entry);
    }

    core::AppLanguage language_ = core::AppLanguage::english;
    QHash<QString, const core::appTranslations::Entry*> rows_; ///< by the English text
};

InterfaceLanguage::InterfaceLanguage(core::AppPreferences& preferences) : translator_(std::make_unique<Translator>()) {
    const auto follow = [this, &preferences] {
        const auto language = preferences.state().language;
        translator_->setLanguage(language);
        QGuiApplication::setLayoutDirection(directionOf(language));
    };
    follow();
    QCoreApplication::installTranslator(translator_.get());
    languageChange_ = preferences.onChanged([follow] {
        follow();
        QEvent change(QEvent::LanguageChange); // as installing a translator sends it
        QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
    });
}

InterfaceLanguage::~InterfaceLanguage() {
    QCoreApplication::removeTranslator(translator_.get());
    QGuiApplication::setLayoutDirection(Qt::LayoutDirectionAuto);
}

} // namespace quillane
