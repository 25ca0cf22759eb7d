// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/preferences/UserDefaults.hpp"

#include <optional>
#include <string_view>

namespace quillane {

/// The application's settings: NSUserDefaults, standardUserDefaults. Only values stored by this application count, not
/// those that the system supplies for all applications.
class MacUserDefaults final : public core::UserDefaults {
public:
    [[nodiscard]] std::optional<core::PropertyListValue> object(std::string_view key) const override;
    void setObject(std::string_view key, core::PropertyListValue value) override;
    void setObjects(const core::PropertyListValue::Dictionary& values) override;
    void removeObject(std::string_view key) override;
};

/// Another application's settings: -[NSUserDefaults persistentDomainForName:]. None when there is no such domain.
[[nodiscard]] std::optional<core::PropertyListValue::Dictionary> preferencesDomain(std::string_view bundleID);

} // namespace quillane
