# Makes faults in memory hard to exploit: flags for every target and every build type. HardeningTests reads them from the
# agent's executable (docs/security.md).
include(CheckCXXCompilerFlag)

# quillane_harden(flag): adds it where the compiler has it; some exist for one processor only.
function(quillane_harden flag)
  string(MAKE_C_IDENTIFIER "QUILLANE_HAS${flag}" known)
  check_cxx_compiler_flag("-Werror ${flag}" ${known})
  if(${known})
    add_compile_options(${flag})
  endif()
endfunction()

quillane_harden(-fstack-protector-strong)
quillane_harden(-fstack-clash-protection)
quillane_harden(-fcf-protection=full)

# Checked indices and iterators of the standard library: GNU's, and LLVM's.
add_compile_definitions(_GLIBCXX_ASSERTIONS _LIBCPP_HARDENING_MODE=_LIBCPP_HARDENING_MODE_FAST)

# Calls of the C library that know the size of their buffer. It needs optimization, and hides the calls from sanitizers.
if(NOT QUILLANE_SANITIZE AND CMAKE_BUILD_TYPE MATCHES "Rel")
  # Level 3 needs GCC 12 or Clang 9 (feature_test_macros(7)); an older one takes it as 2, with a warning.
  set(level 3)
  if(APPLE OR (CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 12))
    set(level 2)
  endif()
  add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${level}) # a distribution may have set another
endif()

if(NOT APPLE) # whose linker does all of this by itself
  # A program at random addresses. CMake's property would build libraries as if they were to be loaded on their own.
  set(loaded "$<OR:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>,$<STREQUAL:$<TARGET_PROPERTY:TYPE>,MODULE_LIBRARY>>")
  add_compile_options($<$<NOT:${loaded}>:-fPIE>)
  add_link_options($<$<NOT:${loaded}>:-pie> -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
