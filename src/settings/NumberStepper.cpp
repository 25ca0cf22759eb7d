// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/NumberStepper.hpp"

#include "core/localization/Texts.hpp"
#include "views/Text.hpp"

#include <QHBoxLayout>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace quillane {

namespace {

QToolButton* makeButton(const char* sign) {
    auto* button = new QToolButton;
    button->setProperty("role", QStringLiteral("stepper"));
    button->setText(QString::fromUtf8(sign));
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

} // namespace

NumberStepper::NumberStepper(Range range, std::function<void(std::int64_t)> changed)
    : range_(range),
      changed_(std::move(changed)),
      value_(range.minimum),
      less_(makeButton("−")),
      more_(makeButton("+")) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(less_);
    row->addWidget(more_);
    connect(less_, &QToolButton::clicked, this, [this] { step(-range_.step); });
    connect(more_, &QToolButton::clicked, this, [this] { step(range_.step); });
}

void NumberStepper::show(std::int64_t value, const core::LocalizedText& what, core::AppLanguage language) {
    value_ = value;
    less_->setEnabled(value > range_.minimum);
    more_->setEnabled(value < range_.maximum);
    less_->setAccessibleName(rendered(core::texts::decreaseNumber(what), language));
    more_->setAccessibleName(rendered(core::texts::increaseNumber(what), language));
}

void NumberStepper::step(std::int64_t by) {
    const auto value = std::clamp(value_ + by, range_.minimum, range_.maximum);
    if (value != value_) {
        value_ = value;
        changed_(value);
    }
}

} // namespace quillane
