// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/settings/BrandPalette.hpp"
#include "fileshare/FileShareModel.hpp"
#include "fileshare/QrCodeView.hpp"

#include <QWidget>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QToolButton;

namespace quillane {

/// The contents of a share window: draws its model, in the interface language and the current appearance.
class FileShareView : public QWidget {
    Q_OBJECT

public:
    /// The model and the services must outlive the view.
    FileShareView(FileShareModel& model, const FileShareServices& services);

signals:
    /// The user wants to close the window.
    void closeRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    void connectButtons();
    void redraw();
    void applyAppearance();
    void drawUploading(core::AppLanguage language);
    void drawLink(const core::Url& link, core::AppLanguage language);
    void drawTexts(core::AppLanguage language);
    void drawSymbol();
    void copyAndClose();

    FileShareModel& model_;
    core::AppPreferences& preferences_;
    std::function<QIcon(const std::string&, const QColor&)> symbol_;
    std::function<void()> openServerSettings_;

    QLabel* icon_;
    QLabel* title_;
    QLabel* fileName_;
    QLabel* detail_; ///< the progress, or why it failed
    QProgressBar* bar_;
    QLabel* percentage_;
    QLabel* rate_;
    QLabel* note_;
    QLabel* linkLabel_;
    QrCodeView* qrCode_;
    QLineEdit* link_;
    QToolButton* qrButton_;
    QPushButton* cancel_;
    QPushButton* tryAgain_;
    QPushButton* close_;
    QPushButton* copy_;
    QPushButton* copyAndClose_;
    QPushButton* chooseServer_;
    std::string shownSymbol_;
    std::optional<core::Appearance> appearance_;
    bool hasQrCode_ = false;            ///< the link is short enough for one
    core::Subscription languageChange_; // last: dropped before what its callback uses
};

} // namespace quillane
