// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "fileshare/QrCode.hpp"

#include <QWidget>

namespace quillane {

/// Draws a QR code, black on white in light and dark windows alike, on whole pixels.
class QrCodeView : public QWidget {
    Q_OBJECT

public:
    /// The maximum side, in points.
    static constexpr int maximumSide = 184;

    /// Shows the code of the text. False when its modules would be too small for a phone to distinguish.
    bool setText(std::string_view text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QrCode code_;
};

} // namespace quillane
