// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/shell/QtFilePanel.hpp"

#include "core/localization/Texts.hpp"
#include "platform/linux/shell/FileTableModel.hpp"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QSplitter>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <QUrl>

#include <utility>

namespace quillane {

namespace {

QString rendered(const core::LocalizedText& text, core::AppLanguage language) {
    return QString::fromStdString(text.rendered(language));
}

constexpr QSize roomForColumns(820, 480);
constexpr int placesWidth = 140;

/// Draws each text in the direction of its own first letter: in a mirrored list a name such as ".profile" would end
/// with its dot.
class IsolatingDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        constexpr QChar firstStrongIsolate(0x2068);
        constexpr QChar popIsolate(0x2069);
        QStyledItemDelegate::initStyleOption(option, index);
        option->text = firstStrongIsolate + option->text + popIsolate;
    }
};

/// Draws texts from left to right, whatever the direction of the application.
class LeftToRightTextStyle : public QProxyStyle {
public:
    void drawItemText(QPainter* painter, const QRect& rect, int flags, const QPalette& palette, bool enabled,
                      const QString& text, QPalette::ColorRole role) const override {
        painter->save();
        painter->setLayoutDirection(Qt::LeftToRight);
        QProxyStyle::drawItemText(painter, rect, flags, palette, enabled, text, role);
        painter->restore();
    }
};

} // namespace

class QtFilePanel::Dialog : public QFileDialog {
public:
    Dialog(const Texts& texts, Chosen chosen, Dropped dropped)
        : chosen_(std::move(chosen)),
          dropped_(std::move(dropped)),
          files_(new FileTableModel),
          message_(new QLabel(this)) {
        setOption(QFileDialog::DontUseNativeDialog); // only Qt's own has room for a message
        setOption(QFileDialog::ReadOnly);            // nothing is renamed or moved here
        setAcceptDrops(true);
        setFileMode(QFileDialog::ExistingFile);
        setAcceptMode(QFileDialog::AcceptOpen);
        setProxyModel(files_); // which makes the dialog its owner
        setItemDelegate(new IsolatingDelegate(this));
        keepPathsInOrder();
        addMessage();
        setTexts(texts);
        resize(sizeHint().expandedTo(roomForColumns));
        fitColumns();
        connect(this, &QFileDialog::fileSelected, this, [this](const QString& file) {
            if (const auto handler = std::exchange(chosen_, nullptr)) {
                handler(QFile::encodeName(file).toStdString());
            }
        });
    }

    void setTexts(const Texts& texts) {
        language_ = texts.language;
        setWindowTitle(QString::fromStdString(texts.title));
        setLabelText(QFileDialog::Accept, QString::fromStdString(texts.prompt));
        setLabelText(QFileDialog::Reject, rendered(core::texts::cancel, language_));
        setLayoutDirection(core::isRTL(language_) ? Qt::RightToLeft : Qt::LeftToRight);
        message_->setText(QString::fromStdString(texts.message));
        files_->setLanguage(language_);
        for (auto* view : findChildren<QAbstractItemView*>()) {
            view->viewport()->update();
        }
        redrawRefusal();
    }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override {
        if (dropped_ && event->mimeData()->hasUrls()) {
            event->acceptProposedAction();
        }
    }

    void dropEvent(QDropEvent* event) override {
        std::vector<std::string> urls;
        for (const auto& url : event->mimeData()->urls()) {
            urls.push_back(url.toEncoded().toStdString());
        }
        event->acceptProposedAction();
        if (const auto refusal = dropped_(urls)) {
            refuse(*refusal);
        } else {
            reject();
        }
    }

private:
    void refuse(const core::LocalizedText& text) {
        auto* box = new QMessageBox(QMessageBox::Information, {}, {}, QMessageBox::Ok, this);
        box->setAttribute(Qt::WA_DeleteOnClose);
        refusal_ = {box, text};
        redrawRefusal();
        box->open();
    }

    void redrawRefusal() {
        if (auto* box = refusal_.first.data()) {
            box->setWindowTitle(windowTitle());
            box->setText(rendered(refusal_.second, language_));
            box->button(QMessageBox::Ok)->setText(rendered(core::texts::qtOK, language_)); // whatever the desktop says
        }
    }

    /// A path is read from its root, and a mirrored field would begin with its end.
    void keepPathsInOrder() {
        if (auto* place = findChild<QComboBox*>(QStringLiteral("lookInCombo"))) {
            auto* style = new LeftToRightTextStyle;
            style->setParent(this);
            place->setStyle(style);
            place->setLayoutDirection(Qt::LeftToRight);
            place->view()->setLayoutDirection(Qt::LeftToRight);
        }
        if (auto* name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit")); name && name->completer()) {
            name->completer()->popup()->setLayoutDirection(Qt::LeftToRight);
        }
    }

    void fitColumns() {
        if (auto* table = findChild<QTreeView*>(QStringLiteral("treeView"))) {
            const auto& metrics = table->fontMetrics();
            const int margin = 2 * metrics.averageCharWidth();
            const auto widthOf = [&](const char* sample) {
                return metrics.horizontalAdvance(QLatin1String(sample)) + margin;
            };
            table->header()->resizeSection(FileTableModel::size, widthOf("888.8 MB"));
            table->header()->resizeSection(FileTableModel::kind, widthOf("MMMMM file"));
            table->header()->resizeSection(FileTableModel::date, widthOf("88 Mmmmmm 8888, 88:88 MM"));
        }
        if (auto* halves = findChild<QSplitter*>(QStringLiteral("splitter"))) {
            halves->setSizes({placesWidth, roomForColumns.width() - placesWidth});
        }
    }

    void addMessage() {
        if (auto* grid = qobject_cast<QGridLayout*>(layout())) {
            message_->setTextFormat(Qt::PlainText);
            message_->setWordWrap(true);
            grid->addWidget(message_, grid->rowCount(), 0, 1, grid->columnCount());
        }
    }

    Chosen chosen_;
    Dropped dropped_;
    core::AppLanguage language_ = core::AppLanguage::english;
    FileTableModel* files_;
    QLabel* message_;
    std::pair<QPointer<QMessageBox>, core::LocalizedText> refusal_; ///< of the last drop
};

QtFilePanel::QtFilePanel() = default;

QtFilePanel::~QtFilePanel() = default;

void QtFilePanel::chooseFile(const Texts& texts, Chosen chosen, Dropped dropped) {
    if (!dialog_ || !dialog_->isVisible()) {
        dialog_ = std::make_unique<Dialog>(texts, std::move(chosen), std::move(dropped));
        dialog_->open();
    }
    dialog_->raise();
    dialog_->activateWindow();
}

void QtFilePanel::setTexts(const Texts& texts) {
    if (dialog_) {
        dialog_->setTexts(texts);
    }
}

} // namespace quillane
