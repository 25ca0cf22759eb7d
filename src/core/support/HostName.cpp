// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/support/HostName.hpp"

#include <cstdint>
#include <memory>

#include <unicode/bytestream.h>
#include <unicode/idna.h>

namespace quillane::core {

std::optional<std::string> asciiHostName(std::string_view name) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::IDNA> idna(icu::IDNA::createUTS46Instance(
        UIDNA_NONTRANSITIONAL_TO_ASCII | UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ | UIDNA_USE_STD3_RULES, status));
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    icu::IDNAInfo info;
    idna->nameToASCII_UTF8({name.data(), static_cast<std::int32_t>(name.size())}, sink, info, status);
    return U_SUCCESS(status) && !info.hasErrors() && !result.empty() ? std::optional(result) : std::nullopt;
}

} // namespace quillane::core
