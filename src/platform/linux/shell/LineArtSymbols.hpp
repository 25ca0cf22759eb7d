// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemSymbols.hpp"

#include <QIcon>

#include <string>

class QColor;

namespace quillane {

/// The icons of menu rows and buttons, under the names of the system symbols of macOS, drawn from the program's own
/// line art and tinted. A name without a drawing gives a null icon.
[[nodiscard]] QIcon symbolIcon(const std::string& name, const QColor& color);

/// The application's own icon.
[[nodiscard]] QIcon applicationIcon();

/// The same drawings as values.
class LineArtSymbols final : public SystemSymbols {
public:
    [[nodiscard]] std::optional<TemplateImage> image(std::string_view name, int pixels) const override;
};

} // namespace quillane
