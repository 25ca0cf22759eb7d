// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/ClipboardHistoryView.hpp"

#include <QElapsedTimer>
#include <QWidget>

namespace quillane {

/// The window of the clipboard history. It takes the keyboard while it is open and leaves the application in front
/// where it is. Made once; it shows itself whenever the model opens.
class HistoryPanel : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize preferredSize{440, 540};

    explicit HistoryPanel(const HistoryPanelServices& services);
    ~HistoryPanel() override;

    [[nodiscard]] ClipboardHistoryView& view() { return *view_; }

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void present();
    void showInFront();
    void place();
    [[nodiscard]] bool isHiddenForLostKeys() const;

    ClipboardPanel& panel_;
    ClipboardHistoryView* view_;
    bool lostKeysBefore_ = false; ///< when it opened, the window that Qt thought had the keys was closed
    QElapsedTimer sinceOpening_;
};

} // namespace quillane
