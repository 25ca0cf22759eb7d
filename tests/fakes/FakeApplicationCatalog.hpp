// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/ApplicationCatalog.hpp"
#include "platform/MainQueue.hpp"

#include <memory>
#include <utility>

namespace quillane::fakes {

/// The applications that a test has installed. Answers on the main queue, like the real one.
class FakeApplicationCatalog final : public ApplicationCatalog {
public:
    explicit FakeApplicationCatalog(MainQueue& queue) : queue_(queue) {}

    void read(Handler handler) override {
        queue_.post([this, handler = std::move(handler), alive = lifetime_.watch()] {
            if (alive) {
                handler(applications);
            }
        });
    }

    std::vector<KnownApplication> applications;

private:
    MainQueue& queue_;
    core::Lifetime lifetime_;
};

} // namespace quillane::fakes
