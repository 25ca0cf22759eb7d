// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/curl/CurlLibrary.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

constexpr int protocolsAsBits = CURLOPTTYPE_LONG + 181; // CURLOPT_PROTOCOLS, which newer headers call deprecated
int lastOption = 0;

/// As in libcurl 7.84, which takes protocols as bits only.
CURLcode setOptionOf784(CURL* /*easy*/, CURLoption option, ...) {
    lastOption = option;
    return option == CURLOPT_PROTOCOLS_STR ? CURLE_UNKNOWN_OPTION : CURLE_OK;
}

CURLcode refuseOption(CURL* /*easy*/, CURLoption /*option*/, ...) {
    return CURLE_OUT_OF_MEMORY;
}

TEST(CurlLibrary, AnOlderLibraryGetsProtocolsAsBits) {
    CurlLibrary library;
    library.easySetOption = setOptionOf784;
    EXPECT_TRUE(library.allowOnlyHttp(nullptr));
    EXPECT_EQ(lastOption, protocolsAsBits);
}

TEST(CurlLibrary, ARefusedLimitIsAFailure) {
    CurlLibrary library;
    library.easySetOption = refuseOption;
    EXPECT_FALSE(library.allowOnlyHttp(nullptr));
}

TEST(CurlLibrary, TheInstalledLibraryTakesTheLimit) {
    const auto* library = CurlLibrary::load();
    ASSERT_NE(library, nullptr);
    CURL* easy = library->easyInit();
    EXPECT_TRUE(library->allowOnlyHttp(easy));
    library->easyCleanup(easy);
}

} // namespace
} // namespace quillane
