// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareView.hpp"

#include "core/localization/NumberText.hpp"
#include "core/localization/Texts.hpp"
#include "views/Colors.hpp"
#include "views/Labels.hpp"
#include "views/Text.hpp"
#include "views/ToolTip.hpp"

#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace quillane {

namespace texts = core::texts;

namespace {

constexpr int margin = 24;
constexpr int spacing = 10;
constexpr int symbolSize = 48;
constexpr int buttonPadding = 20;
constexpr int qrSymbolSize = 20;
constexpr int fileNameWidth = 440;
constexpr int contentWidth = 530 - 2 * margin;

/// Used in this window only.
constexpr auto rules = R"(
#shareView { background: %window; }
QProgressBar { background: %field; border: 1px solid %outline; border-radius: 5px; min-height: 8px; max-height: 8px; }
QProgressBar::chunk { background: %amber; border-radius: 4px; }
QToolButton { background: %field; border: 1px solid %outline; border-radius: 6px; padding: 4px; }
QToolButton:hover, QToolButton:checked { background: %selection; }
QToolButton:focus { border: 2px solid %amber; padding: 3px; }
)";

const char* symbolName(const FileShareModel::State& state) {
    constexpr std::array names{"checkmark.circle.fill", "exclamationmark.circle", "icloud.and.arrow.up",
                               "xmark.circle"};
    return names.at(state.index());
}

core::Color symbolColor(const FileShareModel::State& state, core::Appearance appearance) {
    if (std::holds_alternative<FileShareModel::Completed>(state)) {
        return core::brandPalette::shades(appearance).good;
    }
    if (std::holds_alternative<FileShareModel::Failed>(state)) {
        return core::brandPalette::shades(appearance).warning;
    }
    return core::brandPalette::amber(appearance);
}

/// "4:07", or with hours "1:04:07".
std::string clockText(std::chrono::seconds time) {
    const auto total = std::min<std::int64_t>(time.count(), 359'999); // nobody waits beyond 99:59:59
    const auto two = [](std::int64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    const auto minutes = total / 60 % 60;
    const auto rest = two(total % 60);
    return total >= 3600 ? std::to_string(total / 3600) + ':' + two(minutes) + ':' + rest
                         : std::to_string(minutes) + ':' + rest;
}

QLabel* centredLabel() {
    auto* label = textLabel();
    label->setAlignment(Qt::AlignCenter);
    return label;
}

QFont emphasised(QFont font) {
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.25);
    return font;
}

} // namespace

FileShareView::FileShareView(FileShareModel& model, const FileShareServices& services)
    : model_(model),
      preferences_(services.preferences),
      symbol_(services.symbol),
      openServerSettings_(services.chooseServer),
      icon_(new QLabel),
      title_(centredLabel()),
      fileName_(new QLabel),
      detail_(centredLabel()),
      bar_(new QProgressBar),
      percentage_(new QLabel),
      rate_(centredLabel()),
      note_(centredLabel()),
      linkLabel_(centredLabel()),
      qrCode_(new QrCodeView),
      link_(new QLineEdit),
      qrButton_(new QToolButton),
      cancel_(new QPushButton),
      tryAgain_(new QPushButton),
      close_(new QPushButton),
      copy_(new QPushButton),
      copyAndClose_(new QPushButton),
      chooseServer_(new QPushButton),
      languageChange_(services.preferences.onChanged([this] { redraw(); })) {
    build();
    connectButtons();
    connect(&model_, &FileShareModel::changed, this, [this] { redraw(); });
    QCoreApplication::instance()->installEventFilter(this); // a style sheet keeps palette changes from its widgets
    redraw();
}

void FileShareView::build() {
    setObjectName(QStringLiteral("shareView"));
    setAttribute(Qt::WA_StyledBackground);
    icon_->setAlignment(Qt::AlignCenter);
    title_->setFont(emphasised(title_->font()));
    fileName_->setTextFormat(Qt::PlainText);
    fileName_->setAlignment(Qt::AlignCenter);
    bar_->setRange(0, 1000);
    bar_->setTextVisible(false);
    // Fixed in size, so that a new number redraws the window once without a new layout.
    percentage_->setFixedSize(percentage_->fontMetrics().size(Qt::TextSingleLine, QStringLiteral("100%")));
    rate_->setWordWrap(false);
    rate_->setFixedSize(contentWidth, rate_->fontMetrics().height());
    link_->setReadOnly(true);
    link_->setLayoutDirection(Qt::LeftToRight);
    link_->setAlignment(Qt::AlignLeft);
    linkLabel_->setBuddy(link_);
    qrButton_->setCheckable(true);
    qrButton_->setFocusPolicy(Qt::StrongFocus);
    qrButton_->setIconSize(QSize(qrSymbolSize, qrSymbolSize));
    copyAndClose_->setProperty("role", QStringLiteral("main"));
    chooseServer_->setProperty("role", QStringLiteral("main"));
    note_->setProperty("role", QStringLiteral("secondary"));
    rate_->setProperty("role", QStringLiteral("secondary"));
    icon_->setObjectName(QStringLiteral("symbol"));
    title_->setObjectName(QStringLiteral("title"));
    fileName_->setObjectName(QStringLiteral("fileName"));
    detail_->setObjectName(QStringLiteral("detail"));
    bar_->setObjectName(QStringLiteral("bar"));
    percentage_->setObjectName(QStringLiteral("percentage"));
    rate_->setObjectName(QStringLiteral("rate"));
    note_->setObjectName(QStringLiteral("note"));
    linkLabel_->setObjectName(QStringLiteral("linkLabel"));
    link_->setObjectName(QStringLiteral("link"));
    qrCode_->setObjectName(QStringLiteral("qrCode"));
    qrButton_->setObjectName(QStringLiteral("qrButton"));
    cancel_->setObjectName(QStringLiteral("cancel"));
    tryAgain_->setObjectName(QStringLiteral("tryAgain"));
    close_->setObjectName(QStringLiteral("close"));
    copy_->setObjectName(QStringLiteral("copy"));
    copyAndClose_->setObjectName(QStringLiteral("copyAndClose"));
    chooseServer_->setObjectName(QStringLiteral("chooseServer"));

    auto* progress = new QHBoxLayout;
    progress->addWidget(bar_, 1);
    progress->addWidget(percentage_);
    auto* link = new QHBoxLayout;
    link->addWidget(link_, 1);
    link->addWidget(qrButton_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (auto* button : {cancel_, close_, copy_, tryAgain_, copyAndClose_, chooseServer_}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    copyAndClose_->setDefault(true);
    buttons->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    column->addStretch();
    for (auto* widget : std::initializer_list<QWidget*>{icon_, title_, fileName_, detail_}) {
        column->addWidget(widget);
    }
    column->addWidget(qrCode_, 0, Qt::AlignHCenter);
    column->addLayout(progress);
    for (auto* widget : std::initializer_list<QWidget*>{rate_, note_, linkLabel_}) {
        column->addWidget(widget);
    }
    column->addLayout(link);
    column->addStretch();
    column->addLayout(buttons);
}

void FileShareView::connectButtons() {
    connect(cancel_, &QPushButton::clicked, this, [this] { model_.cancel(); });
    connect(tryAgain_, &QPushButton::clicked, this, [this] { model_.start(); });
    connect(close_, &QPushButton::clicked, this, [this] { emit closeRequested(); });
    connect(copy_, &QPushButton::clicked, this, [this] { model_.copyLink(); });
    connect(copyAndClose_, &QPushButton::clicked, this, [this] { copyAndClose(); });
    connect(chooseServer_, &QPushButton::clicked, this, [this] { openServerSettings_(); });
    connect(qrButton_, &QToolButton::toggled, this, [this] { redraw(); });
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, [this] {
            if (std::holds_alternative<FileShareModel::Completed>(model_.state())) {
                copyAndClose();
            }
        });
    }
}

void FileShareView::copyAndClose() {
    model_.copyLink();
    if (model_.copied()) { // else the link would be lost
        emit closeRequested();
    }
}

bool FileShareView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && currentAppearance() != appearance_) {
        redraw();
    }
    return QWidget::eventFilter(watched, event);
}

void FileShareView::applyAppearance() {
    const auto appearance = currentAppearance();
    if (appearance_ == appearance) {
        return;
    }
    appearance_ = appearance;
    shownSymbol_.clear();
    setStyleSheet(controlsStyleSheet(appearance) + quillane::styleSheet(rules, appearance));
    qrButton_->setIcon(symbol_("qrcode", qColor(core::brandPalette::primary(appearance))));
}

void FileShareView::redraw() {
    const auto language = preferences_.state().language;
    const auto& state = model_.state();
    const bool isUploading = std::holds_alternative<FileShareModel::Uploading>(state);
    const bool isCompleted = std::holds_alternative<FileShareModel::Completed>(state);
    const bool isFailed = std::holds_alternative<FileShareModel::Failed>(state);
    applyAppearance();
    setLayoutDirection(directionOf(language));
    if (const auto* completed = std::get_if<FileShareModel::Completed>(&state)) {
        drawLink(completed->link, language);
    } else {
        qrButton_->setChecked(false);
    }
    const bool isQrShown = isCompleted && hasQrCode_ && qrButton_->isChecked();
    icon_->setVisible(!isQrShown);
    title_->setVisible(!isUploading && !isQrShown);
    qrCode_->setVisible(isQrShown);
    qrButton_->setVisible(isCompleted && hasQrCode_);
    detail_->setVisible(isUploading || isFailed);
    for (auto* widget : std::initializer_list<QWidget*>{fileName_, bar_, percentage_, rate_, note_, cancel_}) {
        widget->setVisible(isUploading);
    }
    for (auto* widget : std::initializer_list<QWidget*>{linkLabel_, link_, copy_, copyAndClose_}) {
        widget->setVisible(isCompleted);
    }
    tryAgain_->setVisible(!isUploading && !isCompleted);
    close_->setVisible(!isUploading);
    chooseServer_->setVisible(isFailed && model_.needsServer());
    drawSymbol();
    drawTexts(language);
    if (isUploading) {
        drawUploading(language);
    }
}

void FileShareView::drawSymbol() {
    const std::string name = symbolName(model_.state());
    if (name != shownSymbol_) {
        const auto color = qColor(symbolColor(model_.state(), *appearance_));
        icon_->setPixmap(symbol_(name, color).pixmap(symbolSize, symbolSize));
        shownSymbol_ = name;
    }
}

void FileShareView::drawLink(const core::Url& link, core::AppLanguage language) {
    const auto text = QString::fromStdString(link.absoluteString());
    if (link_->text() != text) { // keeps a selection
        link_->setText(text);
        link_->setCursorPosition(0);
        hasQrCode_ = qrCode_->setText(link.absoluteString());
    }
    const auto action = rendered(qrButton_->isChecked() ? texts::hideQRCode : texts::showQRCode, language);
    qrButton_->setToolTip(action);
    qrButton_->setAccessibleName(action);
    qrCode_->setAccessibleName(rendered(texts::qrCodeOfLink, language));
}

void FileShareView::drawTexts(core::AppLanguage language) {
    cancel_->setText(rendered(texts::cancel, language));
    tryAgain_->setText(rendered(texts::tryAgain, language));
    close_->setText(rendered(texts::closeWindow, language));
    copy_->setText(rendered(model_.copied() ? texts::linkCopied : texts::copyLink, language));
    copyAndClose_->setText(rendered(texts::copyAndClose, language));
    chooseServer_->setText(rendered(texts::openSettings, language));
    for (auto* button : {cancel_, tryAgain_, close_, copy_, copyAndClose_, chooseServer_}) {
        button->setMinimumWidth(button->sizeHint().width() + buttonPadding);
    }
    linkLabel_->setText(rendered(texts::downloadLink, language));
    if (std::holds_alternative<FileShareModel::Completed>(model_.state())) {
        title_->setText(rendered(texts::fileIsReadyToShare, language));
    } else if (const auto* failed = std::get_if<FileShareModel::Failed>(&model_.state())) {
        title_->setText(rendered(texts::uploadDidNotComplete, language));
        detail_->setText(rendered(failed->message, language));
    } else {
        title_->setText(rendered(texts::uploadCancelled, language));
    }
}

void FileShareView::drawUploading(core::AppLanguage language) {
    const auto path = model_.file().filePath().value_or(std::filesystem::path());
    const auto name = QString::fromStdString(path.filename().string());
    fileName_->setText(fileName_->fontMetrics().elidedText(name, Qt::ElideMiddle, fileNameWidth));
    fileName_->setToolTip(plainToolTip(QString::fromStdString(path.string())));
    fileName_->setAccessibleDescription(QString::fromStdString(path.string()));
    const auto progress = model_.progress();
    detail_->setText(rendered(progress < 1 ? texts::uploadingFile : texts::waitingForDownloadLink, language));
    bar_->setUpdatesEnabled(false); // setValue would draw at once, and the other changes draw the window again
    bar_->setValue(static_cast<int>(progress * bar_->maximum()));
    bar_->setUpdatesEnabled(true);
    percentage_->setText(QStringLiteral("%1%").arg(static_cast<int>(progress * 100)));
    const auto estimate = model_.estimate();
    rate_->setText(estimate ? rendered(texts::speedAndTimeLeft(core::sizeText(estimate->bytesPerSecond, language),
                                                               clockText(estimate->left)),
                                       language)
                            : QString());
    note_->setText(rendered(texts::fileIsUploadedTo(model_.server().displayName()), language));
}

} // namespace quillane
