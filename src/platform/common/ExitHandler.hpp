// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace quillane {

/// Calls back when the program is about to end by exit(3) from within its event loop, as Qt does once its X server has
/// gone, because the loop does not return then. One at a time; main thread.
class ExitHandler {
public:
    explicit ExitHandler(std::function<void()> callback);
    ~ExitHandler();

    ExitHandler(const ExitHandler&) = delete;
    ExitHandler& operator=(const ExitHandler&) = delete;
};

} // namespace quillane
