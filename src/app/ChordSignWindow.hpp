// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/ChordSigns.hpp"
#include "core/settings/BrandPalette.hpp"

#include <QIcon>
#include <QWidget>

#include <string>

class QLabel;

namespace quillane {

/// The sign as a small window of its own, which takes neither the keyboard nor the pointer. It appears and goes without
/// any motion.
class ChordSignWindow : public QWidget, public ChordSignView {
    Q_OBJECT

public:
    using Symbol =
        std::function<QIcon(const std::string& name, const QColor& color)>; ///< a null icon for unknown names

    ChordSignWindow(WindowTraits& windowTraits, Symbol symbol);

    void present(const core::ChordSign& sign, core::AppLanguage language, const std::optional<AXRect>& caret) override;
    void dismiss() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void draw();
    [[nodiscard]] QPixmap drawnSymbols() const;
    void place(const std::optional<AXRect>& caret);

    Symbol symbol_;
    core::ChordSign sign_;
    core::AppLanguage language_{};
    core::Appearance appearance_{};
    QLabel* symbols_;
    QLabel* text_;
};

} // namespace quillane
