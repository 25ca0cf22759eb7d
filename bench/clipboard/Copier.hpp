// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/fixture/XSession.hpp"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace quillane::live {

/// An application that copies and delivers text at once, so that the measurement is of the program that watches the
/// clipboard.
class Copier {
public:
    explicit Copier(const std::string& display);
    ~Copier();
    Copier(const Copier&) = delete;
    Copier& operator=(const Copier&) = delete;

    /// Takes the clipboard; returns the moment at which the request was sent.
    std::chrono::steady_clock::time_point copy(const std::string& text);

private:
    void serve();
    void answer(const xcb_selection_request_event_t& request);

    std::unique_ptr<XSession> session_;
    xcb_window_t window_ = XCB_NONE;
    std::mutex mutex_; ///< guards text_
    std::string text_;
    std::atomic<bool> isEnding_ = false;
    std::thread thread_;
};

} // namespace quillane::live
