// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/ClipboardHistoryView.hpp"

#include "clipboard/panel/EntryTexts.hpp"
#include "clipboard/panel/PanelKeyEvents.hpp"
#include "core/localization/Texts.hpp"
#include "platform/Platform.hpp"
#include "views/Colors.hpp"
#include "views/Labels.hpp"
#include "views/Text.hpp"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QStackedLayout>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <iterator>

namespace quillane {

namespace texts = core::texts;

namespace {

constexpr int margin = 12;
constexpr int searchHeight = 38;
constexpr int buttonSide = 28;
constexpr int buttonSymbol = 18;
constexpr int emptySymbolSide = 44;
constexpr qreal footerFont = 0.86;
constexpr qreal titleFont = 1.2;

constexpr auto rules = R"(
QLabel { color: %primary; background: transparent; }
QLabel[role="secondary"] { color: %secondary; }
QLabel[role="message"] { color: %warning; }
#searchBox { background: %field; border: 1px solid %outline; border-radius: 8px; }
#searchBox QLineEdit { color: %primary; background: transparent; border: none; padding: 0;
    selection-color: %onAmber; selection-background-color: %amber; }
QListView { background: transparent; border: none; outline: none; }
QToolButton { background: transparent; border: 1px solid transparent; border-radius: 6px; }
QToolButton:hover { background: %selection; }
QToolButton:focus { border-color: %amber; }
QFrame[role="notice"] { background: %selection; border-radius: 8px; }
QFrame[role="notice"] QToolButton { color: %primary; border-color: %outline; padding: 3px 8px; }
QFrame[role="notice"] QToolButton:hover { background: %field; }
QFrame[role="notice"] QToolButton:focus { border-color: %amber; }
#footer { border-top: 1px solid %hairline; }
QMenu { color: %primary; background: %field; border: 1px solid %outline; padding: 4px; }
QMenu::item { padding: 5px 18px; border-radius: 4px; }
QMenu::item:selected { color: %onAmber; background: %amber; }
QMenu::separator { height: 1px; background: %off; margin: 4px 8px; }
QToolTip, #helpCard { color: %primary; background: %card; border: 1px solid %outline; padding: 6px; }
QScrollBar:vertical { background: transparent; width: 10px; margin: 2px; }
QScrollBar::handle:vertical { background: %off; border-radius: 3px; min-height: 30px; }
QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
)";

/// Key names read from left to right in every language, with their symbols first.
QString withKeysInOrder(QString text) {
    static const QRegularExpression keys(QStringLiteral("([⌘⌥⇧][A-Za-z0-9]+)"));
    return text.replace(keys, QStringLiteral("\u2066\\1\u2069"));
}

void scaleFont(QWidget& widget, qreal factor) {
    auto font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * factor);
    widget.setFont(font);
}

QToolButton* symbolButton(const char* name) {
    auto* button = new QToolButton;
    button->setObjectName(QLatin1String(name));
    button->setFixedSize(buttonSide, buttonSide);
    button->setIconSize({buttonSymbol, buttonSymbol});
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

ClipboardHistoryView::ClipboardHistoryView(const HistoryPanelServices& services)
    : services_(services),
      symbols_(services.symbol),
      images_(*services.platform.mainQueue, *services.platform.imageQueue),
      files_(*services.platform.mainQueue, *services.platform.fileQueue, services.platform.pasteboard->fileFinder()),
      entries_(new ClipboardListModel(files_)),
      search_(new SearchBox(symbols_)),
      recordingOff_(new PanelNotice("recordingOff")),
      notice_(new PanelNotice("notice")),
      retypedQuery_(textLabel("secondary")),
      list_(new ClipboardList),
      row_(new ClipboardRow(*entries_, images_, files_, symbols_, services.platform.desktop, list_)),
      emptySymbol_(new QLabel),
      emptyTitle_(textLabel("title")),
      emptyText_(textLabel("secondary")),
      footer_(textLabel("secondary")),
      help_(symbolButton("help")),
      settings_(symbolButton("settings")),
      preview_(new EntryPreview(images_, files_, this)),
      helpCard_(new HelpCard(this)),
      panelChange_(services.panel.onChanged([this] { refresh(); })),
      languageChange_(services.preferences.onChanged([this] { redraw(); })) {
    entries_->setParent(this);
    build();
    connectList();
    images_.onReady = [this] {
        list_->viewport()->update();
        preview_->imagesChanged();
    };
    files_.onReady = [this] { list_->viewport()->update(); };
    connect(&search_->field(), &QLineEdit::textChanged, this, [this](const QString& text) {
        dismissPreview();
        services_.panel.setQuery(text.toStdString());
    });
    connect(settings_, &QToolButton::clicked, this, [this] { openSettings(); });
    connect(help_, &QToolButton::clicked, this, [this] { showHelp(); });
    connect(&recordingOff_->button(), &QToolButton::clicked, this, [this] {
        search_->field().setFocus(); // the button is about to disappear
        services_.panel.turnRecordingOn();
    });
    connect(&notice_->button(), &QToolButton::clicked, this, [this] { openSettings(); });
    for (auto* widget :
         std::initializer_list<QWidget*>{&search_->field(), &search_->clearButton(), &recordingOff_->button(),
                                         &notice_->button(), help_, settings_}) {
        widget->installEventFilter(this);
    }
    redraw();
}

void ClipboardHistoryView::build() {
    setObjectName(QStringLiteral("historyView"));
    search_->setFixedHeight(searchHeight);
    list_->setObjectName(QStringLiteral("list"));
    list_->setModel(entries_);
    list_->setItemDelegate(row_);
    list_->setFocusPolicy(Qt::NoFocus);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setResizeMode(QListView::Adjust);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    list_->setMouseTracking(true);
    list_->viewport()->setAttribute(Qt::WA_Hover);

    auto* empty = new QWidget;
    auto* column = new QVBoxLayout(empty);
    column->setContentsMargins(2 * margin, 0, 2 * margin, 2 * margin);
    column->setSpacing(6);
    column->addStretch();
    for (auto* label : {emptySymbol_, emptyTitle_, emptyText_}) {
        label->setAlignment(Qt::AlignCenter);
        column->addWidget(label);
    }
    column->addStretch();
    emptyTitle_->setObjectName(QStringLiteral("emptyTitle"));
    emptyText_->setObjectName(QStringLiteral("emptyText"));

    auto* header = new QVBoxLayout;
    header->setContentsMargins(margin, margin, margin, margin - 4);
    header->setSpacing(8);
    header->addWidget(search_);
    header->addWidget(recordingOff_);
    header->addWidget(notice_);
    retypedQuery_->setObjectName(QStringLiteral("retypedQuery"));
    header->addWidget(retypedQuery_);
    pages_ = new QStackedLayout;
    pages_->addWidget(list_);
    pages_->addWidget(empty);
    auto* bottom = new QFrame;
    bottom->setObjectName(QStringLiteral("footer"));
    auto* row = new QHBoxLayout(bottom);
    row->setContentsMargins(margin + 4, 6, margin, 6);
    row->setSpacing(4);
    footer_->setObjectName(QStringLiteral("footerText"));
    row->addWidget(footer_, 1);
    row->addWidget(help_);
    row->addWidget(settings_);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addLayout(header);
    all->addLayout(pages_, 1);
    all->addWidget(bottom);
}

void ClipboardHistoryView::connectList() {
    connect(list_, &QListView::pressed, this,
            [this](const QModelIndex& index) { services_.panel.select(entries_->entry(index.row()).id); });
    connect(list_, &QListView::clicked, this, [this](const QModelIndex& index) { choose(index); });
    connect(list_, &QListView::entered, this, [this](const QModelIndex& index) { hover(index); });
    connect(list_, &QListView::viewportEntered, this, [this] { dismissPreview(); });
    connect(list_, &QListView::customContextMenuRequested, this, [this](QPoint at) {
        if (const auto index = list_->indexAt(at); index.isValid()) {
            openMenu(entries_->entry(index.row()).id, list_->viewport()->mapToGlobal(at));
        }
    });
    list_->onPress = [this](int row) {
        services_.panel.choose(entries_->entry(row).id, ClipboardPanel::Choice::paste);
    };
    list_->onMenu = [this](int row) {
        services_.panel.select(entries_->entry(row).id);
        openMenu();
    };
    connect(list_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        dismissPreview();
        images_.dropPending(); // rows in view request again
        list_->viewport()->update();
    });
    list_->viewport()->installEventFilter(this);
}

// Opening and closing

void ClipboardHistoryView::begin() {
    files_.forget();
    announced_.reset();
    row_->setImageHeight(static_cast<int>(std::clamp<std::int64_t>(services_.panel.options().imageHeight, 30, 120)));
    search_->field().clear();
    redraw();
    list_->scrollToTop();
}

void ClipboardHistoryView::shown() {
    search_->field().setFocus();
    updateSelection();
}

void ClipboardHistoryView::end() {
    dismissPreview();
    helpCard_->hide();
    images_.dropPending();
    entries_->setEntries({}, {}, 0, {});
    search_->field().clearFocus(); // so that screen readers learn of it again at the next opening
}

// What is shown

void ClipboardHistoryView::refresh() {
    if (!services_.panel.isVisible()) {
        return;
    }
    const auto& panel = services_.panel;
    const auto language = services_.preferences.state().language;
    const auto query = QString::fromStdString(panel.query());
    if (search_->field().text() != query) {
        search_->field().setText(query);
    }
    entries_->setEntries(panel.filtered(), panel.query(), panel.matchCount(),
                         panel.retypedQuery().value_or(std::string()));
    pages_->setCurrentIndex(panel.filtered().empty() ? 1 : 0);
    updateNotices(language);
    updateEmptyState(language);
    footer_->setText(
        withKeysInOrder(rendered(panel.message().value_or(texts::panelKeys.on(services_.platform.desktop)), language)));
    updateSelection();
}

void ClipboardHistoryView::updateSelection() {
    const auto& selection = services_.panel.selection();
    const auto row = selection ? entries_->rowOf(*selection) : std::nullopt;
    if (!row) {
        list_->selectionModel()->clear();
        return;
    }
    const auto index = entries_->index(*row);
    if (list_->currentIndex() != index || !list_->selectionModel()->isSelected(index)) {
        list_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        list_->scrollTo(index);
    }
    if (isVisible() && announced_ != selection) {
        announced_ = selection;
        list_->announce(*row); // the focus stays in the search field; the selection is here
    }
}

void ClipboardHistoryView::updateNotices(core::AppLanguage language) {
    const auto notice = services_.panel.notice();
    recordingOff_->showTexts(rendered(texts::recordingIsOff, language), rendered(texts::turnRecordingOn, language));
    recordingOff_->setVisible(services_.panel.isRecordingOff());
    notice_->showTexts(notice ? rendered(*notice, language) : QString(), rendered(texts::settings, language));
    notice_->setVisible(notice.has_value());
    const auto& retyped = services_.panel.retypedQuery();
    retypedQuery_->setText(retyped ? rendered(texts::alsoSearchedFor(inOneLine(*retyped)), language) : QString());
    retypedQuery_->setVisible(retyped.has_value());
}

void ClipboardHistoryView::updateEmptyState(core::AppLanguage language) {
    const bool isHistoryEmpty = services_.panel.isHistoryEmpty();
    const auto secondary = qColor(core::brandPalette::shades(currentAppearance()).secondary);
    emptySymbol_->setPixmap(symbols_.pixmap(isHistoryEmpty ? "clock.arrow.circlepath" : "magnifyingglass", secondary,
                                            emptySymbolSide, devicePixelRatioF()));
    const auto& nothing = services_.panel.isRecordingOff() ? texts::clipboardHistoryOff : texts::nextCopyAppearsHere;
    emptyTitle_->setText(rendered(isHistoryEmpty ? nothing : texts::noMatchingItems, language));
    emptyText_->setText(isHistoryEmpty ? rendered(texts::textImagesAndFiles, language) : QString());
    emptyText_->setVisible(isHistoryEmpty);
}

void ClipboardHistoryView::redraw() {
    const auto language = services_.preferences.state().language;
    const auto appearance = currentAppearance();
    const auto secondary = qColor(core::brandPalette::shades(appearance).secondary);
    setLayoutDirection(directionOf(language));
    if (const auto sheet = quillane::styleSheet(rules, appearance); sheet != styleSheet()) {
        setStyleSheet(sheet);
    }
    scaleFont(*footer_, footerFont);
    scaleFont(*emptyTitle_, titleFont);
    entries_->setLanguage(language);
    search_->redraw(rendered(texts::searchHistory, language), rendered(texts::clearSearch, language));
    list_->pressName = rendered(texts::pasteItem, language);
    list_->menuName = rendered(texts::moreActions, language);
    list_->setAccessibleName(rendered(texts::historyItems, language));
    settings_->setIcon(symbols_.icon("gearshape", secondary));
    settings_->setToolTip(rendered(texts::historySettings, language));
    settings_->setAccessibleName(rendered(texts::historySettings, language));
    const QStringList help{rendered(texts::searchHistoryHelp.on(services_.platform.desktop), language),
                           rendered(texts::searchMatchesAreBold, language), rendered(texts::hoverToPreview, language)};
    auto questionMark =
        language == core::AppLanguage::arabic ? symbols_.icon("questionmark.circle.ar", secondary) : QIcon();
    help_->setIcon(questionMark.isNull() ? symbols_.icon("questionmark.circle", secondary) : questionMark);
    QStringList paragraphs;
    std::ranges::transform(help, std::back_inserter(paragraphs), withKeysInOrder);
    helpCard_->setParagraphs(paragraphs, layoutDirection());
    help_->setAccessibleName(rendered(texts::historyHelp, language));
    help_->setAccessibleDescription(help.join(QLatin1Char('\n')));
    refresh();
    list_->viewport()->update();
}

void ClipboardHistoryView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ApplicationFontChange) {
        redraw();
    }
}

void ClipboardHistoryView::showHelp() {
    helpCard_->showBeside(*help_);
}

// Acting on rows

void ClipboardHistoryView::choose(const QModelIndex& index) {
    const auto modifiers = QApplication::keyboardModifiers();
    const auto id = entries_->entry(index.row()).id;
    services_.panel.choose(id, modifiers.testFlag(Qt::AltModifier)     ? ClipboardPanel::Choice::copyOnly
                               : modifiers.testFlag(Qt::ShiftModifier) ? ClipboardPanel::Choice::plainPaste
                                                                       : ClipboardPanel::Choice::paste);
}

void ClipboardHistoryView::openMenu() {
    const auto index = list_->currentIndex();
    if (index.isValid()) {
        list_->scrollTo(index);
        openMenu(entries_->entry(index.row()).id, list_->viewport()->mapToGlobal(list_->visualRect(index).center()));
    }
}

void ClipboardHistoryView::openMenu(const core::Uuid& id, QPoint at) {
    dismissPreview();
    const auto row = entries_->rowOf(id);
    if (!row) {
        return;
    }
    services_.panel.select(id);
    auto& panel = services_.panel;
    const auto& entry = entries_->entry(*row);
    const auto language = services_.preferences.state().language;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("rowMenu"));
    const auto add = [&](const core::LocalizedText& text, const std::function<void()>& action) {
        connect(menu->addAction(rendered(text, language)), &QAction::triggered, this, [action] { action(); });
    };
    add(texts::pasteItem, [&panel, id] { panel.choose(id, ClipboardPanel::Choice::paste); });
    if (entry.kind == core::ClipboardKind::text) {
        add(texts::pasteAsPlainText, [&panel, id] { panel.choose(id, ClipboardPanel::Choice::plainPaste); });
    }
    menu->addSeparator();
    add(entry.pinned ? texts::unpin : texts::pin, [&panel, id] { panel.togglePin(id); });
    add(texts::deleteFromHistory, [&panel, id] { panel.remove(id); });
    menu->addSeparator();
    add(texts::historySettings, [this] { openSettings(); });
    menu->popup(at);
}

void ClipboardHistoryView::openSettings() {
    services_.panel.close();
    if (services_.openSettings) {
        services_.openSettings();
    }
}

// Preview

void ClipboardHistoryView::hover(const QModelIndex& index) {
    const auto id = entries_->entry(index.row()).id;
    if (hovered_ == id) {
        return;
    }
    dismissPreview();
    hovered_ = id;
    const auto delay =
        std::chrono::milliseconds(std::clamp<std::int64_t>(services_.panel.options().previewDelay, 200, 3000));
    services_.platform.mainQueue->postAfter(delay, [this, alive = lifetime_.watch(), id, hovering = hovering_] {
        if (alive && hovering == hovering_) {
            showPreview(id);
        }
    });
}

void ClipboardHistoryView::showPreview(const core::Uuid& id) {
    const auto row = entries_->rowOf(id);
    if (!row || !isVisible()) {
        return;
    }
    const auto rect = list_->visualRect(entries_->index(*row));
    preview_->present(entries_->entry(*row), entries_->query(*row), entries_->language(),
                      {QRect(mapToGlobal(QPoint(0, 0)), size()),
                       QRect(list_->viewport()->mapToGlobal(rect.topLeft()), rect.size()),
                       screen()->availableGeometry()});
}

void ClipboardHistoryView::dismissPreview() {
    ++hovering_;
    hovered_.reset();
    preview_->dismiss();
}

// Keys

bool ClipboardHistoryView::handleKey(const QKeyEvent& event) {
    dismissPreview();
    const auto numbering = services_.platform.windowTraits->keyNumbering();
    if (panelKeyEvents::isHotKey(event, numbering)) {
        services_.panel.close();
        return true;
    }
    if (event.key() == Qt::Key_Menu || (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier)) {
        openMenu();
        return true;
    }
    const auto keyCode = panelKeyEvents::keyCode(event, numbering);
    return keyCode && services_.panel.handle(*keyCode, panelKeyEvents::flags(event));
}

bool ClipboardHistoryView::filterKey(QObject* watched, QKeyEvent& event) {
    helpCard_->hide(); // unless this key opens it
    const bool isButton = watched != &search_->field();
    const bool presses = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter || event.key() == Qt::Key_Space;
    if (isButton && presses) {
        dismissPreview();
        auto* button = static_cast<QToolButton*>(watched);
        button->click();
        return true;
    }
    if (handleKey(event)) {
        return true;
    }
    if (isButton && !event.text().isEmpty() && event.text().front().isPrint()) {
        search_->field().setFocus();
        QCoreApplication::sendEvent(&search_->field(), &event);
        return true;
    }
    return false;
}

bool ClipboardHistoryView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == list_->viewport()) {
        if (event->type() == QEvent::Leave || event->type() == QEvent::Wheel ||
            event->type() == QEvent::MouseButtonPress) {
            dismissPreview();
        }
        return false;
    }
    if (watched == help_ && event->type() == QEvent::ToolTip) {
        showHelp();
        return true;
    }
    if (watched == help_ && (event->type() == QEvent::Leave || event->type() == QEvent::FocusOut)) {
        helpCard_->hide();
    }
    return event->type() == QEvent::KeyPress && filterKey(watched, static_cast<QKeyEvent&>(*event));
}

} // namespace quillane
