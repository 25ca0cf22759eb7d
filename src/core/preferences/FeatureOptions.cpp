// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/FeatureOptions.hpp"

#include "core/preferences/DefaultsKeys.hpp"
#include "core/preferences/UserDefaults.hpp"

#include <array>
#include <string>
#include <string_view>

namespace quillane::core {
namespace {

struct Field {
    bool FeatureOptions::*member;
    std::string_view key;
};

constexpr std::array fields{
    Field{&FeatureOptions::shiftEnglish, defaultsKeys::shiftEnglish},
    Field{&FeatureOptions::languageSwitch, defaultsKeys::languageSwitch},
    Field{&FeatureOptions::writingDirection, defaultsKeys::writingDirection},
    Field{&FeatureOptions::keepAwake, defaultsKeys::keepAwake},
    Field{&FeatureOptions::excludeScreenSharing, defaultsKeys::excludeScreenSharing},
    Field{&FeatureOptions::paused, defaultsKeys::paused},
};

} // namespace

FeatureOptions FeatureOptions::load(const UserDefaults& defaults) {
    FeatureOptions options;
    for (const auto& [member, key] : fields) {
        options.*member = defaults.boolean(key).value_or(options.*member);
    }
    return options;
}

void FeatureOptions::save(UserDefaults& defaults) const {
    PropertyListValue::Dictionary values;
    for (const auto& [member, key] : fields) {
        values.emplace(std::string(key), PropertyListValue(this->*member));
    }
    defaults.setObjects(values);
}

} // namespace quillane::core
