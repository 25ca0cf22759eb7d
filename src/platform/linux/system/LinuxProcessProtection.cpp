// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/ProcessProtection.hpp"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace quillane {

void protectProcess() {
    ::prctl(PR_SET_DUMPABLE, 0); // neither dumps to a program (core(5)) nor ptrace(2)
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
}

} // namespace quillane
