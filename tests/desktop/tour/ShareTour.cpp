// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/tour/ShareTour.hpp"

#include "servers/NginxServer.hpp"

namespace quillane::live {

namespace {

constexpr std::string_view content = "What is written here goes to the server and comes back.\n";

class ShareTour {
public:
    ShareTour(Tour& tour, LiveDesktop& desktop) : tour_(tour), desktop_(desktop) {}

    void walk() {
        tour_.step("a file server", [&] { return startServer(); });
        tour_.step("share a file", [&] { return share(); });
        tour_.step("fetch it through the link", [&] { return fetch(); });
        mustSee(agent_->process().end() == ExitStatus{0, 0}, "the agent's orderly end");
    }

private:
    std::string startServer() {
        server_.emplace(servers::NginxServer::start());
        mustSee(server_->has_value(), *server_ ? "" : server_->error());
        address_ = "http://127.0.0.1:" + std::to_string((*server_)->ports().http);
        mustSee(writeAgentSettings(desktop_, {{"FileShareServer", "<string>" + address_ + "</string>"}}),
                "the server's address in the settings");
        auto agent = LiveAgent::start(desktop_);
        mustSee(agent.has_value(), agent ? "" : agent.error());
        agent_ = std::move(*agent);
        return "nginx answers at " + address_ + ", and the agent has it as its server";
    }

    std::string share() {
        mustSee(writeFile(desktop_.home() / name, std::string(content)), "a file to share");
        mustSee(agent_->command({"share", name}).succeeded(), "an answer to quillane share");
        mustSee(waitUntil([&] { return showsLink(); }), "the window that says \"Your file is ready to share\"");
        return "the window says \"Your file is ready to share\" and shows the link";
    }

    std::string fetch() {
        mustSee(desktop_.waitUntilInFront(agent_->process().pid()), "the share window in front");
        desktop_.keyboard().tap(Key::enter);
        std::string link;
        const auto isCopied = [&] {
            link = desktop_.run({"xclip", "-selection", "clipboard", "-o"}).output;
            return link.starts_with(address_ + '/');
        };
        mustSee(waitUntil(isCopied), [&] { return "the link on the clipboard, but: " + link; });
        const auto fetched = desktop_.run({"curl", "--silent", "--fail", "--noproxy", "*", link}).output;
        mustSee(fetched == content, "the same file behind the link, but: " + fetched);
        return "Return has copied " + link + ", and curl fetches the same " + std::to_string(content.size()) +
               " bytes from it";
    }

    [[nodiscard]] bool showsLink() {
        const auto root = desktop_.accessibility().application(agent_->process().pid());
        return root && desktop_.accessibility().find(*root, [](const AccessibleNode& node) {
            return node.name == "Your file is ready to share" && node.is(AccessibleNode::State::showing);
        });
    }

    static constexpr const char* name = "קובץ לשיתוף.txt";

    Tour& tour_;
    LiveDesktop& desktop_;
    std::optional<tl::expected<servers::NginxServer, std::string>> server_;
    std::string address_;
    std::optional<LiveAgent> agent_;
};

} // namespace

void shareTour(Tour& tour, LiveDesktop& desktop) {
    ShareTour(tour, desktop).walk();
}

} // namespace quillane::live
