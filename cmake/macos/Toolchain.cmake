# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
#
# Builds what CMake would build on a Mac, on a machine that is none. scripts/check-macos makes the folder that
# QUILLANE_MACOS_ROOT names: MacOSX.sdk as Xcode has it, and Homebrew's opt/homebrew.

set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUILLANE_MACOS_ROOT CMAKE_OSX_ARCHITECTURES)
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR ${CMAKE_OSX_ARCHITECTURES})
set(CMAKE_OSX_SYSROOT ${QUILLANE_MACOS_ROOT}/MacOSX.sdk)

set(llvm /usr/lib/llvm-16/bin)
set(CMAKE_C_COMPILER ${llvm}/clang)
set(CMAKE_CXX_COMPILER ${llvm}/clang++)
set(CMAKE_OBJC_COMPILER ${llvm}/clang)
set(CMAKE_OBJCXX_COMPILER ${llvm}/clang++)
set(CMAKE_AR ${llvm}/llvm-ar)
set(CMAKE_RANLIB ${llvm}/llvm-ranlib)
set(CMAKE_INSTALL_NAME_TOOL ${llvm}/llvm-install-name-tool)
foreach(language C CXX OBJC OBJCXX)
  set(CMAKE_${language}_COMPILER_TARGET ${CMAKE_OSX_ARCHITECTURES}-apple-macos13)
  # SDKs read the oldest macOS to run on under this name, which clang 16 does not define yet.
  set(CMAKE_${language}_FLAGS_INIT "-D__ENVIRONMENT_OS_VERSION_MIN_REQUIRED__=130000 -isystem ${CMAKE_CURRENT_LIST_DIR}/sdk/include")
endforeach()
set(CMAKE_EXE_LINKER_FLAGS_INIT -fuse-ld=lld)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -fuse-ld=lld)
if(CMAKE_OSX_ARCHITECTURES STREQUAL "x86_64") # what Clang clears memory with is in every Mac's libSystem, but not in all stubs
  string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT " -Wl,-U,___bzero")
endif()

# The libraries to link with are made from what the objects need, so there is none while CMake tries its compilers.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
# Test programs cannot be asked for their tests here.
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)

set(CMAKE_FIND_ROOT_PATH ${QUILLANE_MACOS_ROOT} ${CMAKE_OSX_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_PREFIX_PATH /opt/homebrew)
