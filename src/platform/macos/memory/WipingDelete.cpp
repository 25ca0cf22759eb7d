// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// Takes the place of the global operator delete in the program that is linked with this file, and in every library that
// it loads: whatever C++ code gives back is wiped first ([replacement.functions] in the C++ standard). The other forms
// of delete that the standard library has for ordinary alignment call these.

#include <cstddef>
#include <cstdlib>
#include <new>

#include <malloc/malloc.h>
#include <openssl/crypto.h>

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        OPENSSL_cleanse(memory, malloc_size(memory));
        std::free(memory); // NOLINT(cppcoreguidelines-no-malloc): where the standard library's own new has it from
    }
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    operator delete(memory);
}
