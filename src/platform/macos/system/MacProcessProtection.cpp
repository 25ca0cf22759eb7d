// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/ProcessProtection.hpp"

#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/types.h>

namespace quillane {

void protectProcess() {
    ::ptrace(PT_DENY_ATTACH, 0, nullptr, 0); // the hardened runtime of a packaged copy keeps its task port closed too
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
}

} // namespace quillane
