// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/Platform.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

/// Members are destroyed last to first: one that uses another must stand after it.
TEST(Platform, MembersStandAfterWhatTheyUse) {
    const Platform platform;
    const auto expectOrder = [](const void* used, const void* user, const char* what) {
        EXPECT_LT(used, user) << what;
    };
    expectOrder(&platform.session, &platform.mainQueue, "everything uses the session");
    expectOrder(&platform.mainQueue, &platform.workspace, "workspace");
    expectOrder(&platform.workspace, &platform.applicationCatalog, "applicationCatalog");
    expectOrder(&platform.inputSources, &platform.eventTap, "eventTap");
    expectOrder(&platform.accessibility, &platform.keyEvents, "keyEvents uses the focus");
    expectOrder(&platform.workspace, &platform.keyEvents, "keyEvents uses the application in front");
    expectOrder(&platform.pasteboard, &platform.keyEvents, "keyEvents offers the selection");
    expectOrder(&platform.pasteboard, &platform.areaCapture, "areaCapture");
    expectOrder(&platform.accessibility, &platform.secureInput, "secureInput");
    expectOrder(&platform.secretStore, &platform.vaultQueue, "vaultQueue");
    expectOrder(&platform.proxySettings, &platform.urlSessions, "urlSessions");
}

} // namespace
} // namespace quillane
