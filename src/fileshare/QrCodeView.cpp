// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "fileshare/QrCodeView.hpp"

#include <QPainter>

namespace quillane {

namespace {

constexpr int smallestModule = 2; // points

int modules(const QrCode& code) {
    return code.side + 2 * QrCode::quietZone;
}

} // namespace

bool QrCodeView::setText(std::string_view text) {
    auto code = QrCode::encode(text);
    const int moduleSize = code ? maximumSide / modules(*code) : 0;
    if (moduleSize < smallestModule) {
        code_ = {};
        return false;
    }
    code_ = *std::move(code);
    setFixedSize(modules(code_) * moduleSize, modules(code_) * moduleSize);
    update();
    return true;
}

void QrCodeView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    if (code_.side == 0) {
        return;
    }
    const int size = width() / modules(code_);
    for (int y = 0; y < code_.side; ++y) {
        for (int x = 0; x < code_.side; ++x) {
            if (code_.isDark(x, y)) {
                painter.fillRect((x + QrCode::quietZone) * size, (y + QrCode::quietZone) * size, size, size, Qt::black);
            }
        }
    }
}

} // namespace quillane
