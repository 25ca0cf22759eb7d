// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ApplicationCatalog.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace quillane::testing {

/// What every ApplicationCatalog promises. The driver is constructed for each test and has:
///
///     std::unique_ptr<ApplicationCatalog>& catalog();
///     static constexpr auto installed = "…", running = "…"; // bundle identifiers of applications that are there
///     bool waitUntil(std::function<bool()>);                // lets the world go on; false when it takes too long
template <typename Driver>
class ApplicationCatalogContract : public ::testing::Test {
protected:
    using Applications = std::vector<KnownApplication>;

    [[nodiscard]] Applications read() {
        std::optional<Applications> answer;
        driver.catalog()->read([&](const Applications& applications) { answer = applications; });
        EXPECT_FALSE(answer) << "answered inside the call";
        EXPECT_TRUE(driver.waitUntil([&] { return answer.has_value(); }));
        return answer.value_or(Applications{});
    }

    Driver driver;
};

TYPED_TEST_SUITE_P(ApplicationCatalogContract);

TYPED_TEST_P(ApplicationCatalogContract, ListsInstalledAndRunningApplications) {
    const auto applications = this->read();
    const auto find = [&](std::string_view id) {
        const auto found = std::ranges::find(applications, id, &KnownApplication::bundleID);
        return found != applications.end() ? std::optional(*found) : std::nullopt;
    };
    const auto installed = find(TypeParam::installed);
    const auto running = find(TypeParam::running);
    ASSERT_TRUE(installed && running);
    EXPECT_FALSE(installed->running);
    EXPECT_TRUE(running->running);
}

TYPED_TEST_P(ApplicationCatalogContract, EachHasANameAndAnIdentifierOfItsOwn) {
    std::set<std::string> identifiers;
    for (const auto& application : this->read()) {
        EXPECT_FALSE(application.name.empty());
        EXPECT_FALSE(application.bundleID.empty());
        EXPECT_NE(application.bundleID, "com.quillane.app");
        EXPECT_TRUE(identifiers.insert(application.bundleID).second) << application.bundleID;
    }
}

TYPED_TEST_P(ApplicationCatalogContract, EveryReaderIsAnsweredOnceOnThisThread) {
    int answers = 0;
    const auto thread = std::this_thread::get_id();
    for (int i = 0; i < 2; ++i) {
        this->driver.catalog()->read([&](const auto&) {
            ++answers;
            EXPECT_EQ(std::this_thread::get_id(), thread);
        });
    }
    EXPECT_TRUE(this->driver.waitUntil([&] { return answers >= 2; }));
    EXPECT_FALSE(this->read().empty());
    EXPECT_EQ(answers, 2);
}

TYPED_TEST_P(ApplicationCatalogContract, NoHandlerIsCalledAfterItsEnd) {
    bool answered = false;
    this->driver.catalog()->read([&](const auto&) { answered = true; });
    this->driver.catalog().reset();
    int turns = 0;
    EXPECT_TRUE(this->driver.waitUntil([&] { return ++turns > 20; }));
    EXPECT_FALSE(answered);
}

REGISTER_TYPED_TEST_SUITE_P(ApplicationCatalogContract, ListsInstalledAndRunningApplications,
                            EachHasANameAndAnIdentifierOfItsOwn, EveryReaderIsAnsweredOnceOnThisThread,
                            NoHandlerIsCalledAfterItsEnd);

} // namespace quillane::testing
