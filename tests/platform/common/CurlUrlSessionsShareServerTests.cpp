// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/UploadTest.hpp"
#include "servers/NginxServer.hpp"

namespace quillane {
namespace {

/// The server that docs/share-server.md describes.
class ShareServerTest : public UploadTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(server_) << server_.error();
        configuration_.certificateAuthorities = server_->authority();
        address_ = "https://127.0.0.1:" + std::to_string(server_->ports().http2);
    }

    struct Answer {
        std::string status;
        std::string headers;
        std::string body;
    };

    /// What curl gets, with more arguments.
    [[nodiscard]] Answer ask(const std::string& url, const std::vector<std::string>& more = {}) const {
        const auto headers = files_.path() / "headers";
        const auto body = files_.path() / "body";
        std::vector<std::string> arguments{"/usr/bin/curl",
                                           "--silent",
                                           "--noproxy",
                                           "*",
                                           "--cacert",
                                           server_->authority(),
                                           "-D",
                                           headers,
                                           "-o",
                                           body,
                                           "-w",
                                           "%{http_code}",
                                           url};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const auto result = live::runToEnd({.arguments = arguments}, timeout);
        return {result.output, live::readFile(headers), live::readFile(body)};
    }

    /// The link of an upload.
    [[nodiscard]] std::string upload(const std::string& name, const std::string& content) {
        const auto text = outcome(address_, files_.url(name, content));
        EXPECT_TRUE(text.starts_with("link ")) << text;
        return text.substr(std::min<std::size_t>(5, text.size()));
    }

    tl::expected<servers::NginxServer, std::string> server_ = servers::NginxServer::startDocumented();
    std::string address_;
};

TEST_F(ShareServerTest, FileComesBackFromItsLink) {
    const auto link = upload("קובץ #1.txt", content_);
    EXPECT_EQ(ask(link).body, content_);
    EXPECT_EQ(ask(upload("empty.txt", "")).status, "200");
}

TEST_F(ShareServerTest, NothingIsListed) {
    const auto link = upload("a.txt", content_);
    const auto token = link.substr(0, link.rfind('/'));
    for (const auto& url : {address_ + "/", address_ + "/files/", address_ + "/incoming/", token, token + "/"}) {
        const auto answer = ask(url);
        EXPECT_EQ(answer.status, "405") << url;
        EXPECT_EQ(answer.body.find("a.txt"), std::string::npos) << answer.body;
    }
    EXPECT_EQ(ask(address_ + "/00000000000000000000000000000000/a.txt").status, "404");
}

TEST_F(ShareServerTest, PagesAndScriptsAreBytesToDownload) {
    for (const auto* name : {"page.html", "script.php", "script.cgi", "drawing.svg", "code.js"}) {
        const std::string content = "<?php echo 6 * 7; ?><script>1</script>";
        const auto answer = ask(upload(name, content));
        EXPECT_EQ(answer.body, content) << name;
        for (const auto* header : {"content-type: application/octet-stream", "content-disposition: attachment",
                                   "x-content-type-options: nosniff", "content-security-policy: sandbox;"}) {
            EXPECT_NE(answer.headers.find(header), std::string::npos) << name << answer.headers;
        }
    }
}

TEST_F(ShareServerTest, LinkCannotBeWrittenTo) {
    const auto link = upload("a.txt", content_);
    for (const auto* method : {"PUT", "POST", "DELETE"}) {
        EXPECT_EQ(ask(link, {"-X", method, "--data", "other"}).status, "403") << method;
    }
    EXPECT_EQ(ask(link).body, content_);
}

TEST_F(ShareServerTest, OnlyTheNamedNetworksMayUpload) {
    const auto elsewhere = "https://[::1]:" + std::to_string(server_->ports().http2);
    EXPECT_EQ(outcome(elsewhere, files_.url("a.txt", content_)), "Upload failed. The server returned status 403.");
    auto link = upload("a.txt", content_);
    EXPECT_EQ(ask(link.replace(0, address_.size(), elsewhere)).body, content_); // and everybody may download
}

TEST_F(ShareServerTest, NamesReachNoOtherFile) {
    for (const auto* path : {"/../../server.key", "/%2e%2e/server.key", "/..%2f..%2fserver.key"}) {
        EXPECT_NE(ask(address_ + path, {"--path-as-is"}).status, "200") << path;
    }
    EXPECT_EQ(ask(upload("..%2F..%2Fserver.key", content_)).body, content_);
}

} // namespace
} // namespace quillane
