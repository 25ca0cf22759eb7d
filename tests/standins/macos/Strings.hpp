// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/macos/foundation/CFRef.hpp"
#include "standins/macos/Object.hpp"

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <string_view>

namespace quillane::standin {

/// A CFString: UTF-16, lone surrogates included.
class String final : public Object {
public:
    explicit String(std::u16string text, Owner owner = Owner::caller) : Object(owner), text_(std::move(text)) {}

    [[nodiscard]] CFTypeID type() const override { return CFStringGetTypeID(); }

    [[nodiscard]] std::string describe() const override;
    [[nodiscard]] bool equals(const Object& other) const override;

    [[nodiscard]] const std::u16string& text() const { return text_; }

private:
    std::u16string text_;
};

/// A new string of ASCII or UTF-8 text.
[[nodiscard]] CFRef<CFStringRef> string(std::string_view utf8);

/// The text of a string, for what the stand-ins compare.
[[nodiscard]] std::string text(CFTypeRef string);

} // namespace quillane::standin
