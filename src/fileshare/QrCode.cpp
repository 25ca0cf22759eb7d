// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "fileshare/QrCode.hpp"

#include <memory>

#include <qrencode.h>

namespace quillane {

namespace {

struct Free {
    void operator()(QRcode* code) const { QRcode_free(code); }
};

} // namespace

std::optional<QrCode> QrCode::encode(std::string_view text) {
    constexpr int smallestVersion = 0;
    const std::unique_ptr<QRcode, Free> code(QRcode_encodeData(static_cast<int>(text.size()),
                                                               reinterpret_cast<const unsigned char*>(text.data()),
                                                               smallestVersion, QR_ECLEVEL_M));
    if (!code) {
        return std::nullopt;
    }
    QrCode result{code->width, {}};
    const auto count = static_cast<std::size_t>(code->width) * static_cast<std::size_t>(code->width);
    result.dark.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        result.dark.push_back((code->data[i] & 1U) != 0); // the other bits describe the purpose of a module
    }
    return result;
}

} // namespace quillane
