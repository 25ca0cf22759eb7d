// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/UrlSession.hpp"
#include "support/Journal.hpp"

#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace quillane::fakes {

/// Sessions whose transfers do what a test says. As with real ones, nothing reaches the delegate of a session that is
/// gone or has completed, and a session takes one upload.
class FakeUrlSessions {
public:
    struct Transfer {
        core::UrlSessionConfiguration configuration;
        core::UrlSessionDelegate* delegate = nullptr; ///< null once the session is gone or has completed
        std::optional<core::UrlRequest> request;
        std::filesystem::path file;
        bool cancelled = false; ///< by `cancelTask`
        bool destroyed = false;

        void send(std::int64_t sent, std::int64_t expected) const {
            if (delegate != nullptr) {
                delegate->didSendBodyData(sent, expected);
            }
        }

        void receive(std::string_view text) const {
            if (delegate != nullptr) {
                delegate->didReceiveData(std::as_bytes(std::span(text)));
            }
        }

        void redirect() const {
            if (delegate != nullptr) {
                delegate->redirectRequested();
            }
        }

        void complete(std::optional<core::UrlResponse> response, std::optional<core::UrlError> error = {}) {
            if (auto* receiver = std::exchange(delegate, nullptr)) {
                receiver->didComplete(response, error);
            }
        }

        /// What a session does after `cancelTask`.
        void completeCancelled() { complete(std::nullopt, core::UrlError::cancelled); }
    };

    [[nodiscard]] core::UrlSessionFactory factory() {
        return [this](const core::UrlSessionConfiguration& configuration, core::UrlSessionDelegate& delegate) {
            transfers.push_back(std::make_shared<Transfer>(Transfer{configuration, &delegate, {}, {}}));
            return std::make_unique<Session>(transfers.back(), journal);
        };
    }

    [[nodiscard]] Transfer& last() const { return *transfers.at(transfers.size() - 1); }

    Journal* journal = nullptr;                       ///< none: nothing is recorded
    std::vector<std::shared_ptr<Transfer>> transfers; ///< shared with the sessions, which tests outlive

private:
    class Session final : public core::UrlSession {
    public:
        Session(std::shared_ptr<Transfer> transfer, Journal* journal)
            : transfer_(std::move(transfer)), journal_(journal) {}

        ~Session() override {
            if (transfer_->delegate != nullptr) {
                note(journal_, "end of an unfinished upload");
            }
            transfer_->delegate = nullptr;
            transfer_->destroyed = true;
        }

        void upload(const core::UrlRequest& request, const std::filesystem::path& file) override {
            if (transfer_->request) {
                throw std::logic_error("a session takes one upload");
            }
            transfer_->request = request;
            transfer_->file = file;
        }

        void cancelTask() override { transfer_->cancelled = true; }

    private:
        std::shared_ptr<Transfer> transfer_;
        Journal* journal_;
    };
};

} // namespace quillane::fakes
