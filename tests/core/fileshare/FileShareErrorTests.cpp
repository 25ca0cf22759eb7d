// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/fileshare/FileShareError.hpp"

#include "core/fileshare/FileShareServer.hpp"
#include "core/localization/Texts.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

std::string english(const FileShareFailure& failure) {
    const auto server = FileShareServer::validating("https://files.example:8443/up").value();
    return message(failure, server, Desktop::macOS).rendered(AppLanguage::english);
}

TEST(FileShareMessage, EveryErrorHasItsMessage) {
    EXPECT_EQ(english(FileShareError::httpStatus(413)), "The file exceeds the size allowed by files.example:8443/up.");
    EXPECT_EQ(english(FileShareError::httpStatus(500)), "Upload failed. The server returned status 500.");
    EXPECT_EQ(english(FileShareError::httpStatus(302)), "Upload failed. The server returned status 302.");
    EXPECT_EQ(english(FileShareError::selectOneFile), "Select one file to share.");
    EXPECT_EQ(english(FileShareError::unreadableFile),
              "Cannot read this file. Make sure it is available on your Mac and you have access.");
    EXPECT_EQ(english(FileShareError::notRegularFile),
              "Select a regular file. To share a folder, compress it to a ZIP first.");
    const std::string noLink = "The service did not return a valid link. You can try again.";
    EXPECT_EQ(english(FileShareError::invalidResponse), noLink);
    EXPECT_EQ(english(FileShareError::redirectRefused), noLink);
}

TEST(FileShareMessage, OnlyTheTimeOutHasAMessageOfItsOwnAmongTransferErrors) {
    EXPECT_EQ(english(UrlError::timedOut), "The upload timed out. You can try again.");
    for (auto error = UrlError::cancelled; error <= UrlError::unknown;
         error = static_cast<UrlError>(static_cast<int>(error) + 1)) {
        if (error != UrlError::timedOut) {
            EXPECT_EQ(english(error), "Could not upload the file. Check your internet connection and try again.");
        }
    }
}

TEST(FileShareMessage, AnInvalidAddressIsExplained) {
    EXPECT_EQ(texts::invalidServerAddress.rendered(AppLanguage::english),
              "Invalid address. Use an https address for any server, or an http address only for a server on your "
              "local network.");
}

TEST(FileShareMessage, TheServersNameIsIsolatedInRightToLeftText) {
    const auto server = FileShareServer::validating("https://files.example").value();
    for (const auto language : {AppLanguage::hebrew, AppLanguage::arabic}) {
        const auto text = message(FileShareError::httpStatus(413), server, Desktop::macOS).rendered(language);
        EXPECT_NE(text.find("\u2068files.example\u2069"), std::string::npos) << text;
    }
}

TEST(FileShareError, EqualityTakesTheStatusIntoAccount) {
    EXPECT_EQ(FileShareError::httpStatus(500), FileShareError::httpStatus(500));
    EXPECT_NE(FileShareError::httpStatus(500), FileShareError::httpStatus(501));
    EXPECT_NE(FileShareError::invalidResponse, FileShareError::redirectRefused);
}

} // namespace
} // namespace quillane::core
