// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/fileshare/FileShareProtocol.hpp"

#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace quillane::core {
namespace {

using live::TemporaryFolder;
using Headers = std::vector<std::pair<std::string, std::string>>;

FileShareServer server(std::string_view address) {
    return FileShareServer::validating(address).value();
}

tl::expected<Url, FileShareError> link(std::string_view body, std::string_view address = "https://host",
                                       int status = 200) {
    return fileShareProtocol::link(std::as_bytes(std::span(body)), status, server(address));
}

/// The link when it is accepted, else "refused".
std::string verdict(std::string_view body, std::string_view address = "https://host") {
    const auto found = link(body, address);
    if (!found) {
        EXPECT_EQ(found.error(), FileShareError::invalidResponse);
        return "refused";
    }
    return found->absoluteString();
}

class FileShareRequestTest : public testing::Test {
protected:
    [[nodiscard]] std::string urlFor(std::string_view name, std::string_view address = "https://host/up") const {
        const auto request = fileShareProtocol::request(files_.url(name), server(address));
        return request ? request->url.absoluteString() : "none";
    }

    [[nodiscard]] FileShareError errorFor(const std::filesystem::path& path) const {
        return fileShareProtocol::request(Url::fromFilePath(path), server("https://host")).error();
    }

    live::TemporaryFolder files_;
};

TEST_F(FileShareRequestTest, IsAPutOfTheFileWithItsSize) {
    const auto request =
        fileShareProtocol::request(files_.url("report.pdf", "12345"), server("https://host/up")).value();
    EXPECT_EQ(request.url.absoluteString(), "https://host/up/report.pdf");
    EXPECT_EQ(request.method, "PUT");
    EXPECT_EQ(request.timeout, std::chrono::seconds(60));
    EXPECT_EQ(request.headers, (Headers{{"Content-Type", "application/octet-stream"}, {"Content-Length", "5"}}));
}

TEST_F(FileShareRequestTest, AnEmptyFileHasTheSizeZero) {
    const auto request = fileShareProtocol::request(files_.url("empty", ""), server("https://host")).value();
    EXPECT_EQ(request.url.absoluteString(), "https://host/empty");
    EXPECT_EQ(request.headers.back(), (std::pair<std::string, std::string>("Content-Length", "0")));
}

TEST_F(FileShareRequestTest, NamesAreEncodedAsOneSegment) {
    EXPECT_EQ(urlFor("a b.txt"), "https://host/up/a%20b.txt");
    EXPECT_EQ(urlFor("a#b?c%d.txt"), "https://host/up/a%23b%3Fc%25d.txt");
    EXPECT_EQ(urlFor("100%25.txt"), "https://host/up/100%2525.txt");
    EXPECT_EQ(urlFor("שלום.txt"), "https://host/up/%D7%A9%D7%9C%D7%95%D7%9D.txt");
    EXPECT_EQ(urlFor("ملف.txt"), "https://host/up/%D9%85%D9%84%D9%81.txt");
    EXPECT_EQ(urlFor("😀.txt"), "https://host/up/%F0%9F%98%80.txt");
    EXPECT_EQ(urlFor("e\u0301.txt"), "https://host/up/e%CC%81.txt"); // stays decomposed
    EXPECT_EQ(urlFor("\u00E9.txt"), "https://host/up/%C3%A9.txt");
    EXPECT_EQ(urlFor("\xFF\xFE.bin"), "https://host/up/%FF%FE.bin"); // no text at all
    EXPECT_EQ(urlFor("a\nb\x01.txt"), "https://host/up/a%0Ab%01.txt");
    EXPECT_EQ(urlFor("a\\b|c<d>\"e\"^`{}[]"), "https://host/up/a%5Cb%7Cc%3Cd%3E%22e%22%5E%60%7B%7D%5B%5D");
    EXPECT_EQ(urlFor("-._~!$&'()*+,;=:@"), "https://host/up/-._~!$&'()*+,;=:@");
    EXPECT_EQ(urlFor("..."), "https://host/up/...");
    EXPECT_EQ(urlFor("\u202Efdp.exe"), "https://host/up/%E2%80%AEfdp.exe");
}

TEST_F(FileShareRequestTest, GoesBelowTheServersPathAsItIsWritten) {
    EXPECT_EQ(urlFor("f", "https://host"), "https://host/f");
    EXPECT_EQ(urlFor("f", "https://host/a//b//"), "https://host/a//b/f");
    EXPECT_EQ(urlFor("f", "https://host/a%20b%2Fc"), "https://host/a%20b%2Fc/f");
    EXPECT_EQ(urlFor("f", "http://[FE80::1]:8080/x"), "http://[FE80::1]:8080/x/f");
}

TEST_F(FileShareRequestTest, OnlyARegularFileIsSent) {
    EXPECT_EQ(errorFor(files_.path()), FileShareError::notRegularFile);
    EXPECT_EQ(errorFor("/dev/null"), FileShareError::notRegularFile);
    const auto fifo = files_.path() / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(errorFor(fifo), FileShareError::notRegularFile);
    const auto web = Url::parse("https://host/file").value();
    EXPECT_EQ(fileShareProtocol::request(web, server("https://host")).error(), FileShareError::notRegularFile);
}

TEST_F(FileShareRequestTest, AFileThatCannotBeExaminedIsUnreadable) {
    EXPECT_EQ(errorFor(files_.path() / "missing"), FileShareError::unreadableFile);
    EXPECT_EQ(errorFor(files_.file("plain") / "below"), FileShareError::unreadableFile);
    const auto dangling = files_.path() / "dangling";
    std::filesystem::create_symlink("nowhere", dangling);
    EXPECT_EQ(errorFor(dangling), FileShareError::unreadableFile);
    const auto loop = files_.path() / "loop";
    std::filesystem::create_symlink("loop", loop);
    EXPECT_EQ(errorFor(loop), FileShareError::unreadableFile);
}

TEST_F(FileShareRequestTest, AFileWithoutPermissionIsUnreadable) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "everything is readable to this user";
    }
    const auto path = files_.file("secret");
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    EXPECT_EQ(errorFor(path), FileShareError::unreadableFile);
}

TEST_F(FileShareRequestTest, ALinkToAFileIsSentUnderItsOwnName) {
    std::filesystem::create_symlink(files_.file("original", "123"), files_.path() / "alias");
    const auto request =
        fileShareProtocol::request(Url::fromFilePath(files_.path() / "alias"), server("https://host")).value();
    EXPECT_EQ(request.url.absoluteString(), "https://host/alias");
    EXPECT_EQ(request.headers.back().second, "3");
}

TEST(FileShareLink, TheOnlyLineOfASuccessfulAnswerIsTheLink) {
    EXPECT_EQ(verdict("https://host/abc/file.txt\n"), "https://host/abc/file.txt");
    EXPECT_EQ(verdict("\r\n https://host/abc/file.txt \t\r\n"), "https://host/abc/file.txt");
    for (const int status : {200, 201, 202, 204, 299}) {
        EXPECT_TRUE(link("https://host/abc/f", "https://host", status));
    }
}

TEST(FileShareLink, AnyOtherStatusFailsWhateverTheBodySays) {
    for (const int status : {0, 100, 199, 300, 304, 400, 404, 413, 500, 599}) {
        EXPECT_EQ(link("https://host/abc/f", "https://host", status).error(), FileShareError::httpStatus(status));
        EXPECT_EQ(link(std::string(9000, 'x'), "https://host", status).error(), FileShareError::httpStatus(status));
    }
}

TEST(FileShareLink, ABodyThatIsNotOneLineOfTextIsRefused) {
    for (const std::string& body :
         {std::string(), std::string(" \n"), std::string("https://host/a/b\nhttps://host/c/d"),
          std::string("https://host/a/b\rx"), std::string("https://host/a/b\r\n\r\nx"),
          std::string("https://host/a/b\xFF"), std::string("\xC0\x80https://host/a/b"),
          std::string("https://host/a/b\0", 17), std::string("\xEF\xBB\xBFhttps://host/a/b"), std::string("<html>"),
          std::string("https://host/a/b c"), std::string("host/a/b"), std::string("/a/b"), std::string("//host/a/b"),
          std::string("https://host/a/ב")}) {
        EXPECT_EQ(verdict(body), "refused") << body;
    }
}

TEST(FileShareLink, ABodyIsReadUpTo8192Bytes) {
    const auto body = [](std::size_t size) {
        std::string text = "https://host/abc/";
        return text + std::string(size - text.size(), 'x');
    };
    EXPECT_EQ(verdict(body(8192)), body(8192));
    EXPECT_EQ(verdict(body(8193)), "refused");
    EXPECT_EQ(verdict("https://host/a/b" + std::string(8176, '\n')), "https://host/a/b");
    EXPECT_EQ(verdict("https://host/a/b" + std::string(8177, '\n')), "refused");
}

TEST(FileShareLink, SchemeAndHostAreTheServersInAnyCase) {
    EXPECT_EQ(verdict("HTTPS://HOST/a/b"), "HTTPS://HOST/a/b");
    EXPECT_EQ(verdict("https://h%6Fst/a/b"), "https://host/a/b");
    for (const auto* body : {"http://host/a/b", "ftp://host/a/b", "https://other/a/b", "https://host.example/a/b",
                             "https://host./a/b", "https:///a/b", "https:/a/b", "https://[::1]/a/b"}) {
        EXPECT_EQ(verdict(body), "refused") << body;
    }
    EXPECT_EQ(verdict("http://nas/a/b", "http://nas"), "http://nas/a/b");
    EXPECT_EQ(verdict("https://nas/a/b", "http://nas"), "refused");
    EXPECT_EQ(verdict("http://[::1]:8080/a/b", "http://[::1]:8080"), "http://[::1]:8080/a/b");
    EXPECT_EQ(verdict("http://[0::1]:8080/a/b", "http://[::1]:8080"), "refused");
}

TEST(FileShareLink, IPv6AddressIsTheServersInAnyCase) {
    EXPECT_EQ(verdict("http://[fe80::abcd]/a/b", "http://[FE80::ABCD]"), "http://[fe80::abcd]/a/b");
    EXPECT_EQ(verdict("http://[FE80::abcd]/a/b", "http://[fe80::ABCD]"), "http://[FE80::abcd]/a/b");
    EXPECT_EQ(verdict("http://[fe80::abce]/a/b", "http://[FE80::ABCD]"), "refused");
}

TEST(FileShareLink, ZoneOfTheServerIsNotCompared) {
    EXPECT_EQ(verdict("http://[fe80::1]:8080/a/b", "http://[fe80::1%25eth0]:8080"), "http://[fe80::1]:8080/a/b");
    EXPECT_EQ(verdict("http://[fe80::1%25en1]:8080/a/b", "http://[fe80::1%25eth0]:8080"), "http://[fe80::1]:8080/a/b");
    EXPECT_EQ(verdict("http://[fe80::2]:8080/a/b", "http://[fe80::1%25eth0]:8080"), "refused");
}

TEST(FileShareLink, NamesAreComparedInAscii) {
    for (const auto* server : {"https://קבצים.example", "https://xn--5dbqm8ad.example"}) {
        for (const auto* host : {"קבצים.example", "xn--5dbqm8ad.example", "%D7%A7%D7%91%D7%A6%D7%99%D7%9D.EXAMPLE"}) {
            EXPECT_EQ(verdict("https://" + std::string(host) + "/a/b", server), "https://xn--5dbqm8ad.example/a/b");
        }
        EXPECT_EQ(verdict("https://קובץ.example/a/b", server), "refused");
        EXPECT_EQ(verdict("https://\u200Fקבצים.example/a/b", server), "refused"); // only typed addresses are cleaned
    }
}

TEST(FileShareLink, ThePortIsTheServers) {
    EXPECT_EQ(verdict("https://host:443/abc/f"), "https://host:443/abc/f");
    EXPECT_EQ(verdict("https://host:/abc/f"), "https://host/abc/f");
    EXPECT_EQ(verdict("https://host/abc/f", "https://host:443"), "https://host/abc/f");
    EXPECT_EQ(verdict("https://host:8443/abc/f"), "refused");
    EXPECT_EQ(verdict("https://host:8443/abc/f", "https://host:8443"), "https://host:8443/abc/f");
    EXPECT_EQ(verdict("https://host/abc/f", "https://host:8443"), "refused");
    EXPECT_EQ(verdict("https://host:443/abc/f", "https://host:8443"), "refused");
    EXPECT_EQ(verdict("http://nas:80/abc/f", "http://nas"), "http://nas:80/abc/f");
    EXPECT_EQ(verdict("http://nas/abc/f", "http://nas:443"), "refused");
}

TEST(FileShareLink, UserPasswordQueryAndFragmentAreRefused) {
    for (const auto* body : {"https://me@host/a/b", "https://me:x@host/a/b", "https://@host/a/b", "https://host/a/b?",
                             "https://host/a/b?c", "https://host/a/b#", "https://host/a/b#c"}) {
        EXPECT_EQ(verdict(body), "refused") << body;
    }
}

TEST(FileShareLink, ThePathHoldsATokenAndANameInsideTheServersPath) {
    EXPECT_EQ(verdict("https://host/abc123/report.pdf"), "https://host/abc123/report.pdf");
    EXPECT_EQ(verdict("https://host//abc//f//"), "https://host//abc//f//");
    for (const auto* body : {"https://host", "https://host/", "https://host/file.txt", "https://host/file.txt/",
                             "https://host//file.txt", "https://host/abc%2Ffile.txt"}) {
        EXPECT_EQ(verdict(body), "refused") << body;
    }
    EXPECT_EQ(verdict("https://host/up/abc/f", "https://host/up"), "https://host/up/abc/f");
    EXPECT_EQ(verdict("https://host/%75p/abc/f", "https://host/up/"), "https://host/%75p/abc/f");
    EXPECT_EQ(verdict("https://host/a%20b/abc/f", "https://host/a%20b"), "https://host/a%20b/abc/f");
    for (const auto* body : {"https://host/abc/f", "https://host/up/f", "https://host/upper/abc/f", "https://host/up",
                             "https://host/Up/abc/f", "https://host//up/abc/f", "https://host/up%2Fabc/f/g"}) {
        EXPECT_EQ(verdict(body, "https://host/up"), "refused") << body;
    }
}

} // namespace
} // namespace quillane::core
