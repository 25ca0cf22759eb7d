// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/PanelNotice.hpp"

#include "views/WrappingLabel.hpp"

#include <QHBoxLayout>
#include <QToolButton>

namespace quillane {

PanelNotice::PanelNotice(const char* name) : label_(new WrappingLabel), button_(new QToolButton) {
    const auto objectName = QString::fromLatin1(name);
    setObjectName(objectName);
    setProperty("role", QStringLiteral("notice"));
    label_->setObjectName(objectName + QStringLiteral("Text"));
    button_->setObjectName(objectName + QStringLiteral("Button"));
    button_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button_->setFocusPolicy(Qt::TabFocus);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 6, 8, 6);
    row->setSpacing(8);
    row->addWidget(label_, 1);
    row->addWidget(button_);
}

void PanelNotice::showTexts(const QString& text, const QString& buttonText) {
    label_->setText(text);
    button_->setText(buttonText);
    button_->setAccessibleName(buttonText);
    button_->setAccessibleDescription(text);
}

} // namespace quillane
