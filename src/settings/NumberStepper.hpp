// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"

#include <QWidget>

#include <cstdint>
#include <functional>

class QToolButton;

namespace quillane {

/// Two buttons that decrease and increase a number, within bounds. The number itself is shown beside them.
class NumberStepper : public QWidget {
    Q_OBJECT

public:
    struct Range {
        std::int64_t minimum;
        std::int64_t maximum;
        std::int64_t step;
    };

    NumberStepper(Range range, std::function<void(std::int64_t)> changed);

    /// Enables the directions that are possible from the value. The name of the number becomes part of the buttons'
    /// names.
    void show(std::int64_t value, const core::LocalizedText& what, core::AppLanguage language);

    using QWidget::show;

private:
    void step(std::int64_t by);

    Range range_;
    std::function<void(std::int64_t)> changed_;
    std::int64_t value_;
    QToolButton* less_;
    QToolButton* more_;
};

} // namespace quillane
