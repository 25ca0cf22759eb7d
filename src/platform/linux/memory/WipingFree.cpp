// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// Takes the place of free(3) and realloc(3) in the program that is linked with this file, and in every library that it
// loads: whatever is given back is wiped first. Copied texts pass through the memory of Qt, XCB, D-Bus and ICU, so no
// single class could wipe all of it. The C library allows a program to take the calls over (glibc manual, "Replacing
// malloc") and exports its own under these names.

#include <cstdlib>
#include <cstring>

#include <malloc.h>

// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming)
extern "C" {
void __libc_free(void* memory) noexcept;
void* __libc_realloc(void* memory, std::size_t size) noexcept;
}

// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)

extern "C" {

[[gnu::visibility("default")]] void free(void* memory) noexcept {
    if (memory != nullptr) {
        explicit_bzero(memory, malloc_usable_size(memory));
        __libc_free(memory);
    }
}

/// A block that has room stays where it is. Any other moves here, because the C library would not wipe the old one.
[[gnu::visibility("default")]] void* realloc(void* memory, std::size_t size) noexcept {
    if (memory == nullptr) {
        return malloc(size);
    }
    const std::size_t held = malloc_usable_size(memory);
    if (size > held) {
        void* moved = malloc(size);
        if (moved != nullptr) {
            std::memcpy(moved, memory, held);
            free(memory);
        }
        return moved;
    }
    explicit_bzero(static_cast<char*>(memory) + size, held - size);
    return __libc_realloc(memory, size);
}

} // extern "C"
