// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <elf.h>

namespace quillane {
namespace {

/// What the agent's executable (elf(5)) shows of the flags that it was built with.
class Hardening : public ::testing::Test {
protected:
    Hardening() {
        std::ifstream in(QUILLANE_AGENT, std::ios::binary);
        file_.assign(std::istreambuf_iterator<char>(in), {});
        header_ = at<Elf64_Ehdr>(0);
        if (std::memcmp(header_.e_ident, ELFMAG, SELFMAG) != 0 || header_.e_ident[EI_CLASS] != ELFCLASS64) {
            throw std::runtime_error("not a program of 64 bits: " QUILLANE_AGENT);
        }
        for (std::size_t i = 0; i < header_.e_phnum; ++i) {
            segments_.push_back(at<Elf64_Phdr>(header_.e_phoff + i * header_.e_phentsize));
        }
    }

    [[nodiscard]] const Elf64_Ehdr& header() const { return header_; }

    [[nodiscard]] std::vector<Elf64_Phdr> segments(Elf64_Word type) const {
        std::vector<Elf64_Phdr> found;
        std::ranges::copy_if(segments_, std::back_inserter(found),
                             [type](const Elf64_Phdr& segment) { return segment.p_type == type; });
        return found;
    }

    /// The value of an entry of the dynamic section; 0 when it has none.
    [[nodiscard]] Elf64_Xword dynamic(Elf64_Sxword tag) const {
        for (const auto& segment : segments(PT_DYNAMIC)) {
            for (std::size_t offset = 0; offset < segment.p_filesz; offset += sizeof(Elf64_Dyn)) {
                const auto entry = at<Elf64_Dyn>(segment.p_offset + offset);
                if (entry.d_tag == tag) {
                    return entry.d_un.d_val;
                }
            }
        }
        return 0;
    }

    /// Whether the program takes something whose name contains this from a library.
    [[nodiscard]] bool imports(std::string_view name) const {
        const auto names = offsetOf(dynamic(DT_STRTAB));
        return std::string_view(file_).substr(names, dynamic(DT_STRSZ)).find(name) != std::string_view::npos;
    }

    /// How many times the machine code contains these bytes.
    [[nodiscard]] std::size_t countInCode(std::string_view bytes) const {
        std::size_t count = 0;
        for (const auto& segment : segments(PT_LOAD)) {
            if ((segment.p_flags & PF_X) != 0) {
                const auto code = std::string_view(file_).substr(segment.p_offset, segment.p_filesz);
                for (auto found = code.find(bytes); found != code.npos; found = code.find(bytes, found + 1)) {
                    ++count;
                }
            }
        }
        return count;
    }

private:
    template <typename Part>
    [[nodiscard]] Part at(std::size_t offset) const {
        Part part{};
        if (offset + sizeof part <= file_.size()) {
            std::memcpy(&part, file_.data() + offset, sizeof part);
        }
        return part;
    }

    [[nodiscard]] std::size_t offsetOf(Elf64_Addr address) const {
        for (const auto& segment : segments(PT_LOAD)) {
            if (address >= segment.p_vaddr && address < segment.p_vaddr + segment.p_filesz) {
                return address - segment.p_vaddr + segment.p_offset;
            }
        }
        return file_.size();
    }

    std::string file_;
    Elf64_Ehdr header_{};
    std::vector<Elf64_Phdr> segments_;
};

TEST_F(Hardening, ProgramIsLoadedAtARandomAddress) {
    EXPECT_EQ(header().e_type, ET_DYN);
    EXPECT_EQ(segments(PT_INTERP).size(), 1U) << "a library, no program";
    EXPECT_NE(dynamic(DT_FLAGS_1) & DF_1_PIE, 0U);
}

TEST_F(Hardening, TablesOfAddressesAreReadOnlyOnceTheProgramRuns) {
    EXPECT_EQ(segments(PT_GNU_RELRO).size(), 1U);
    EXPECT_TRUE((dynamic(DT_FLAGS) & DF_BIND_NOW) != 0 || (dynamic(DT_FLAGS_1) & DF_1_NOW) != 0);
}

TEST_F(Hardening, NoMemoryIsWritableAndExecutable) {
    ASSERT_EQ(segments(PT_GNU_STACK).size(), 1U) << "without it the stack is executable";
    EXPECT_EQ(segments(PT_GNU_STACK).front().p_flags & PF_X, 0U);
    EXPECT_TRUE(std::ranges::none_of(segments(PT_LOAD), [](const Elf64_Phdr& segment) {
        return (segment.p_flags & (PF_W | PF_X)) == (PF_W | PF_X);
    }));
}

TEST_F(Hardening, LibrariesComeFromTheSystemsFoldersOnly) {
    EXPECT_EQ(dynamic(DT_RPATH), 0U);
    EXPECT_EQ(dynamic(DT_RUNPATH), 0U);
}

TEST_F(Hardening, OverwrittenStackFramesAreNoticed) {
    EXPECT_TRUE(imports("__stack_chk_fail"));
}

TEST_F(Hardening, IndicesOfTheStandardLibraryAreChecked) {
    EXPECT_TRUE(imports("__glibcxx_assert_fail"));
}

#ifdef NDEBUG
TEST_F(Hardening, CallsThatFillABufferKnowItsSize) {
    EXPECT_TRUE(imports("__snprintf_chk"));
    EXPECT_TRUE(imports("__memcpy_chk"));
}
#endif

#ifdef __x86_64__
TEST_F(Hardening, IndirectJumpsLandWhereTheyMay) {
    EXPECT_GT(countInCode("\xf3\x0f\x1e\xfa"), 1'000U) << "endbr64 at the start of functions";
}

TEST_F(Hardening, LargeStackFramesTouchEveryPage) {
    EXPECT_GT(countInCode(std::string_view("\x48\x83\x0c\x24\x00", 5)), 0U) << "or $0, (%rsp)";
}
#endif

} // namespace
} // namespace quillane
