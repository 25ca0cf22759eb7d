// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AccessibleIdentifiers.hpp"

/// Answers some questions of assistive technologies wrongly, and all others correctly.
class WrongAnswers : public AccessibleIdentifiers {
public:
    /// What is answered wrongly: "field" (a field is asked what it is), "cursor" and "ranges" (where its cursor stands:
    /// values of other types, and places that no text has), "focus" (nothing has it while the menu is open), "items"
    /// and "titles" (what is in a menu: the menu itself over and over, and items without a name). Nothing when it is
    /// empty.
    explicit WrongAnswers(QString about);

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    [[nodiscard]] QVariant wrongAnswer(const QDBusMessage& message, const QDBusConnection& connection) const;

    QString about_;
};
