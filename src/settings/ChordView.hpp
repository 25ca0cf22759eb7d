// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"

#include <QWidget>

#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// One key of a chord as it is drawn.
struct ChordKey {
    enum class Side { any, left, right };

    std::string sign;         ///< the sign on the key before its name, for example "⇧"; may be empty
    core::LocalizedText name; ///< "Shift"
    Side side = Side::any;    ///< which of two keys with that name

    /// The key in words: "Right Shift".
    [[nodiscard]] core::LocalizedText spoken() const;
};

/// A chord drawn as keys. The keys stand from left to right in every language, as on the keyboard.
class ChordView : public QWidget {
    Q_OBJECT

public:
    explicit ChordView(std::vector<ChordKey> keys, QWidget* parent = nullptr);

    /// Names of keys and sides in a language; also what assistive technologies read.
    void setLanguage(core::AppLanguage language);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Cap {
        QString label;
        QString side;
    };

    [[nodiscard]] QFont sideFont() const;
    [[nodiscard]] int capWidth(const Cap& cap) const;
    [[nodiscard]] int capHeight() const;

    std::vector<ChordKey> keys_;
    std::vector<Cap> caps_;
};

} // namespace quillane
