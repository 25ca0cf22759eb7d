// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "servers/NginxServer.hpp"

#include "core/support/FileDescriptor.hpp"
#include "support/Waiting.hpp"

#include <array>
#include <filesystem>
#include <optional>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quillane::servers {

namespace {

const live::Environment environment{{"PATH", "/usr/sbin:/usr/bin:/sbin:/bin"}};

sockaddr_in6 loopback(std::uint16_t port) {
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(port);
    address.sin6_addr = in6addr_loopback;
    return address;
}

/// Ports that are free at this moment.
std::optional<NginxServer::Ports> freePorts() {
    std::array<core::FileDescriptor, 3> sockets; // all held until all are known, so that they differ
    std::array<std::uint16_t, 3> ports{};
    for (std::size_t i = 0; i < sockets.size(); ++i) {
        sockets[i] = core::FileDescriptor(::socket(AF_INET6, SOCK_STREAM, 0));
        auto address = loopback(0);
        socklen_t length = sizeof address;
        if (::bind(sockets[i].get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            ::getsockname(sockets[i].get(), reinterpret_cast<sockaddr*>(&address), &length) != 0) {
            return std::nullopt;
        }
        ports[i] = ntohs(address.sin6_port);
    }
    return NginxServer::Ports{ports[0], ports[1], ports[2]};
}

bool isListening(std::uint16_t port) {
    const core::FileDescriptor client(::socket(AF_INET6, SOCK_STREAM, 0));
    const auto address = loopback(port);
    return ::connect(client.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

void replaceAll(std::string& text, const std::string& what, const std::string& with) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
}

std::string forgetting(std::uint16_t port) {
    return "location /forget/ { client_body_in_file_only off; client_body_buffer_size 1m; proxy_http_version 1.1; "
           "proxy_set_header Host $http_host; proxy_set_header X-Forwarded-Proto $scheme; proxy_request_buffering off; "
           "proxy_pass http://127.0.0.1:" +
           std::to_string(port) + "; }";
}

std::string configuration(const std::filesystem::path& folder, const NginxServer::Ports& ports,
                          std::optional<std::uint16_t> passedOnTo) {
    auto text = live::readFile(QUILLANE_SERVERS "/nginx.conf.in");
    replaceAll(text, "@FOLDER@", folder);
    replaceAll(text, "@SCRIPTS@", QUILLANE_SERVERS);
    replaceAll(text, "@USER@", ::geteuid() == 0 ? "user root;" : "");
    replaceAll(text, "@FORGET@", passedOnTo ? forgetting(*passedOnTo) : "");
    replaceAll(text, "@HTTP@", std::to_string(ports.http));
    replaceAll(text, "@HTTPS@", std::to_string(ports.https));
    replaceAll(text, "@HTTP2@", std::to_string(ports.http2));
    return text;
}

/// The first block of the page that is marked as nginx's.
std::string documentedServer() {
    const auto page = live::readFile(QUILLANE_DOCS "/share-server.md");
    const std::string opening = "```nginx\n";
    const auto begin = page.find(opening);
    return begin == std::string::npos
               ? std::string()
               : page.substr(begin + opening.size(), page.find("```", begin + opening.size()) - begin - opening.size());
}

/// What Debian's own configuration has around the documented one, with the machine's places replaced by the test's.
std::string documentedConfiguration(const std::filesystem::path& folder, const NginxServer::Ports& ports) {
    auto text =
        "load_module /usr/lib/nginx/modules/ngx_http_js_module.so;\ndaemon off;\n@USER@\npid @FOLDER@/nginx.pid;\n"
        "events {}\nhttp {\naccess_log @FOLDER@/access.log;\nproxy_temp_path @FOLDER@/proxy;\n"
        "fastcgi_temp_path @FOLDER@/fastcgi;\nuwsgi_temp_path @FOLDER@/uwsgi;\nscgi_temp_path @FOLDER@/scgi;\n"
        "server { listen [::1]:@HTTP@; return 404; }\n" +
        documentedServer() + "}\n";
    replaceAll(text, "/etc/nginx/quillane", QUILLANE_SERVERS);
    replaceAll(text, "/var/lib/quillane-share", "@FOLDER@");
    replaceAll(text, "/etc/letsencrypt/live/files.example/fullchain.pem", "@FOLDER@/server.pem");
    replaceAll(text, "/etc/letsencrypt/live/files.example/privkey.pem", "@FOLDER@/server.key");
    replaceAll(text, "listen 443", "listen 127.0.0.1:@HTTP2@");
    replaceAll(text, "listen [::]:443", "listen [::1]:@HTTP2@");
    replaceAll(text, "allow 192.168.0.0/16", "allow 127.0.0.1");
    replaceAll(text, "@FOLDER@", folder);
    replaceAll(text, "@USER@", ::geteuid() == 0 ? "user root;" : "");
    replaceAll(text, "@HTTP@", std::to_string(ports.http));
    replaceAll(text, "@HTTP2@", std::to_string(ports.http2));
    return text;
}

/// Makes the authority and the server's certificate; an error text when openssl fails.
std::string makeCertificates(const std::filesystem::path& folder) {
    const std::string base = folder;
    if (!live::writeFile(folder / "names", "subjectAltName=DNS:localhost,IP:127.0.0.1,IP:::1\n")) {
        return "cannot write to " + base;
    }
    const std::array<std::vector<std::string>, 3> commands{{
        {"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-days", "2",
         "-subj", "/CN=Quillane test authority", "-keyout", base + "/authority.key", "-out", base + "/authority.pem"},
        {"openssl", "req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-subj", "/CN=localhost",
         "-keyout", base + "/server.key", "-out", base + "/server.csr"},
        {"openssl", "x509", "-req", "-days", "2", "-in", base + "/server.csr", "-CA", base + "/authority.pem", "-CAkey",
         base + "/authority.key", "-CAcreateserial", "-extfile", base + "/names", "-out", base + "/server.pem"},
    }};
    for (const auto& command : commands) {
        const auto result =
            live::runToEnd({.arguments = command, .environment = environment}, std::chrono::seconds(20));
        if (!result.succeeded()) {
            return result.errors;
        }
    }
    return {};
}

} // namespace

tl::expected<NginxServer, std::string> NginxServer::start(std::optional<std::uint16_t> passedOnTo) {
    return start([passedOnTo](const std::filesystem::path& folder, const Ports& ports) {
        return configuration(folder, ports, passedOnTo);
    });
}

tl::expected<NginxServer, std::string> NginxServer::startDocumented() {
    return start(documentedConfiguration);
}

tl::expected<NginxServer, std::string> NginxServer::start(const Configuration& configuration) {
    std::string reason;
    for (int attempt = 0; attempt < 3; ++attempt) { // another program may take a free port first
        auto folder = live::TemporaryFolder::create("quillane-nginx");
        const auto ports = freePorts();
        if (!folder || !ports) {
            return tl::unexpected(folder ? "no free ports on [::1]" : folder.error());
        }
        const auto& path = folder->path();
        if (auto error = makeCertificates(path); !error.empty()) {
            return tl::unexpected(std::move(error));
        }
        std::filesystem::create_directory(path / "files");
        if (!live::writeFile(path / "nginx.conf", configuration(path, *ports))) {
            return tl::unexpected("cannot write to " + path.string());
        }
        auto process = live::ChildProcess::start(
            {.arguments = {"nginx", "-c", path / "nginx.conf", "-p", path, "-e", path / "error.log"},
             .environment = environment,
             .errors = path / "start.log"});
        if (!process) {
            return tl::unexpected(process.error());
        }
        if (live::waitUntil([&] { return isListening(ports->http) || !process->isRunning(); }) &&
            process->isRunning()) {
            return NginxServer(*std::move(folder), *std::move(process), *ports);
        }
        reason = live::readFile(path / "error.log") + live::readFile(path / "start.log");
    }
    return tl::unexpected("nginx did not start: " + reason);
}

} // namespace quillane::servers
