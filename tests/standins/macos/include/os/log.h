// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// Logging (developer.apple.com/documentation/os/os_log_error). The stand-in keeps formats, and none of what fills them.

void logErrorOfStandIn(const char* format);

template <typename... Private>
void logErrorOfStandIn(const char* format, const Private&... /*arguments*/) {
    logErrorOfStandIn(format);
}

#define OS_LOG_DEFAULT nullptr
#define os_log_error(log, ...) logErrorOfStandIn(__VA_ARGS__)
