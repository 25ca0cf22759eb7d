// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// Takes the place of the global operator delete in the program that is linked with this file, and in every library that
// it loads: whatever C++ code gives back is wiped first ([replacement.functions] in the C++ standard). The other forms
// of delete that the standard library has for ordinary alignment call these.

#define __STDC_WANT_LIB_EXT1__ 1 // NOLINT(bugprone-reserved-identifier): for memset_s

#include <cstddef>
#include <cstdlib>
#include <new>

#include <malloc/malloc.h>
#include <string.h>

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        const std::size_t size = malloc_size(memory);
        memset_s(memory, size, 0, size);
        std::free(memory); // NOLINT(cppcoreguidelines-no-malloc): where the standard library's own new has it from
    }
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    operator delete(memory);
}
