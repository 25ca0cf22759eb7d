// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/ExitHandler.hpp"

#include <cstdlib>
#include <thread>
#include <utility>

namespace quillane {

namespace {

// atexit(3) takes a function without data, so its callback must be global.
struct Registration {
    std::function<void()> callback;
    std::thread::id thread;
};

Registration& registration() {
    static Registration instance;
    return instance;
}

void atExit() {
    if (registration().thread == std::this_thread::get_id()) { // state is still in use if another thread ends the
                                                               // program
        if (const auto callback = std::exchange(registration().callback, nullptr)) {
            callback();
        }
    }
}

} // namespace

ExitHandler::ExitHandler(std::function<void()> callback) {
    registration() = {std::move(callback), std::this_thread::get_id()}; // made before atexit, so that it goes after
    static const int registered = std::atexit(atExit);
    static_cast<void>(registered);
}

ExitHandler::~ExitHandler() {
    registration().callback = nullptr;
}

} // namespace quillane
