// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/applications/X11WindowNames.hpp"

#include <QString>

#include <string_view>

namespace quillane {

WindowNames windowNames(const xcb_get_property_reply_t* reply) {
    if (reply == nullptr || reply->format != 8) {
        return {};
    }
    const std::string_view both(static_cast<const char*>(xcb_get_property_value(reply)), reply->value_len);
    const auto end = both.find('\0');
    if (end == std::string_view::npos) {
        return {};
    }
    const auto utf8 = [](std::string_view text) {
        return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())).toStdString();
    };
    const auto second = both.substr(end + 1);
    return {utf8(both.substr(0, end)), utf8(second.substr(0, second.find('\0')))};
}

} // namespace quillane
