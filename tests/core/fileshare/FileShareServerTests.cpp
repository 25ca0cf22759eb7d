// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/fileshare/FileShareServer.hpp"

#include "core/fileshare/ServerAddressTable.hpp"
#include "fakes/FakeUserDefaults.hpp"

#include <gtest/gtest.h>

#include <iterator>
#include <set>

namespace quillane::core {
namespace {

using fakes::FakeUserDefaults;
using Stored = PropertyListValue::Dictionary;

FileShareServer server(std::string_view address) {
    return FileShareServer::validating(address).value();
}

TEST(FileShareServer, EveryAddressOfTheTableGetsItsVerdict) {
    static_assert(std::size(addressTable) >= 150);
    for (const auto& row : addressTable) {
        SCOPED_TRACE(row.typed);
        const auto found = FileShareServer::validating(row.typed);
        ASSERT_EQ(found.has_value(), !row.url.empty());
        if (found) {
            EXPECT_EQ(found->url().absoluteString(), row.url);
            EXPECT_EQ(found->displayName(), row.displayName);
            EXPECT_EQ(found->port(), row.port);
        }
    }
}

TEST(FileShareServer, NoAddressIsInTheTableTwice) {
    std::set<std::string_view> seen;
    for (const auto& row : addressTable) {
        EXPECT_TRUE(seen.insert(row.typed).second) << row.typed;
    }
}

TEST(FileShareServer, ACheckedAddressStaysAsItIs) {
    for (const auto& row : addressTable) {
        if (const auto first = FileShareServer::validating(row.typed)) {
            EXPECT_EQ(FileShareServer::validating(first->url().absoluteString()), first) << row.typed;
        }
    }
}

TEST(FileShareServer, PartsAreThoseOfTheAddress) {
    const auto found = server("  HTTPS://Files.Example/Up/ ");
    EXPECT_EQ(found.scheme(), "https");
    EXPECT_EQ(found.host(), "files.example");
    EXPECT_EQ(found.port(), 443);
    EXPECT_EQ(found.path(), "/Up");
    const auto ipv6 = server("http://[FE80::1]:8080/a%20b//");
    EXPECT_EQ(ipv6.scheme(), "http");
    EXPECT_EQ(ipv6.host(), "FE80::1");
    EXPECT_EQ(ipv6.port(), 8080);
    EXPECT_EQ(ipv6.path(), "/a b");
}

TEST(FileShareServer, ZoneIsPartOfTheAddressAndNotOfTheHost) {
    const auto found = server("http://[fe80::1%eth0]:8080");
    EXPECT_EQ(found.host(), "fe80::1");
    EXPECT_EQ(found.url().absoluteString(), "http://[fe80::1%25eth0]:8080");
    EXPECT_NE(found, server("http://[fe80::1%eth1]:8080"));
}

TEST(FileShareServer, NamesThatAreReservedForExamplesAreKnown) {
    for (const auto* host :
         {"share.quillane.example", "example", "example.com", "files.example.net", "a.b.example.org"}) {
        EXPECT_TRUE(FileShareServer::isReservedForExamples(host)) << host;
    }
    for (const auto* host : {"example.de", "notexample.com", "example.com.evil", "files.quillane", "nas", "::1", ""}) {
        EXPECT_FALSE(FileShareServer::isReservedForExamples(host)) << host;
    }
}

TEST(FileShareServer, OnlyAStandardServerThatCannotExistIsAPlaceholder) {
    const auto& standard = FileShareServer::standard();
    EXPECT_EQ(standard.isPlaceholder(), FileShareServer::isReservedForExamples(standard.host()));
    EXPECT_FALSE(server("https://files.example").isPlaceholder()); // somebody typed it
    EXPECT_FALSE(server("http://nas").isPlaceholder());
}

TEST(FileShareServer, AnAddressTooLongToBeOneIsRefused) {
    EXPECT_TRUE(FileShareServer::validating("https://files.example/" + std::string(16000, 'a')));
    EXPECT_FALSE(FileShareServer::validating("https://files.example/" + std::string(16384, 'a')));
}

TEST(FileShareServer, LocalHostsAreJudgedByTheirText) {
    for (const auto* host :
         {"nas", "printer.local", "10.1.2.3", "127.0.0.1", "169.254.9.9", "172.16.0.0", "192.168.0.0", "::1", "[::1]",
          "]][::1[", "fc00::", "[fd12::1]", "fe80::1", "feb0::1", ""}) {
        EXPECT_TRUE(FileShareServer::isLocalNetwork(host)) << host;
    }
    for (const auto* host : {"nas.lan", "NAS.LOCAL", "10.0.0.256", "10.0.0", "10.0.0.1.5", "172.32.0.1", "8.8.8.8",
                             "2001:db8::1", "::", "FE80::1", "fec0::1", ":", "[:]", "1.2.3.٤", "10.0.0.1:80"}) {
        EXPECT_FALSE(FileShareServer::isLocalNetwork(host)) << host;
    }
}

TEST(FileShareServer, IPv4RangesAreExact) {
    for (unsigned first = 0; first < 256; ++first) {
        for (unsigned second = 0; second < 256; ++second) {
            const bool expected = first == 10 || first == 127 || (first == 169 && second == 254) ||
                                  (first == 172 && second / 16 == 1) || (first == 192 && second == 168);
            const auto host = std::to_string(first) + '.' + std::to_string(second) + ".0.9";
            EXPECT_EQ(FileShareServer::isLocalNetwork(host), expected) << host;
        }
    }
}

TEST(FileShareServer, StandardServerIsHttpsWithoutPortAndPath) {
    const auto& standard = FileShareServer::standard();
    EXPECT_EQ(standard.scheme(), "https");
    EXPECT_EQ(standard.port(), 443);
    EXPECT_EQ(standard.path(), "");
    EXPECT_EQ(standard.displayName(), standard.host());
}

TEST(FileShareServer, SavingTheStandardServerRemovesTheKey) {
    FakeUserDefaults defaults(Stored{{"FileShareServer", "https://files.example"}});
    FileShareServer::standard().save(defaults);
    EXPECT_TRUE(defaults.values.empty());
}

TEST(FileShareServer, SavingAnotherServerStoresItsAddress) {
    FakeUserDefaults defaults;
    server("HTTPS://Files.Example:8443/Up/").save(defaults);
    EXPECT_EQ(defaults.string("FileShareServer"), "https://files.example:8443/Up");
    EXPECT_EQ(FileShareServer::saved(defaults), server("https://files.example:8443/Up"));
}

TEST(FileShareServer, TheStandardServerWithItsPortNamedIsAnotherAddress) {
    FakeUserDefaults defaults;
    const auto named = FileShareServer::standard().url().absoluteString() + ":443";
    server(named).save(defaults);
    EXPECT_EQ(defaults.string("FileShareServer"), named);
}

TEST(FileShareServer, WhateverElseIsStoredMeansTheStandardServerAndStays) {
    for (const PropertyListValue& stored :
         {PropertyListValue("http://files.example"), PropertyListValue(""), PropertyListValue(std::int64_t{7}),
          PropertyListValue(true),
          PropertyListValue(PropertyListValue::Array{PropertyListValue("https://a.example")})}) {
        const FakeUserDefaults defaults(Stored{{"FileShareServer", stored}});
        EXPECT_EQ(FileShareServer::saved(defaults), FileShareServer::standard());
        EXPECT_EQ(defaults.values.at("FileShareServer"), stored);
    }
    EXPECT_EQ(FileShareServer::saved(FakeUserDefaults()), FileShareServer::standard());
}

} // namespace
} // namespace quillane::core
