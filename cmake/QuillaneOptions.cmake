# Compiler settings that hold for every target, and the helpers that name targets and tests.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

set(QUILLANE_SANITIZE "" CACHE STRING "Sanitizers for every target, as given to -fsanitize")
option(QUILLANE_COVERAGE "Count which lines run (gcov)" OFF)
option(QUILLANE_FUZZ "Build the libFuzzer targets instead of the tests" OFF)
option(BUILD_TESTING "Build tests and benchmarks" ON)

find_program(QUILLANE_CCACHE ccache)
if(QUILLANE_CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${QUILLANE_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QUILLANE_CCACHE})
  # Precompiled headers and ccache agree only with these (ccache manual, "Precompiled headers").
  set(ENV{CCACHE_SLOPPINESS} "pch_defines,time_macros,include_file_mtime,include_file_ctime")
endif()

# Debian's compiler is known; a Mac's is whatever Apple has released last, and a new warning must stop nobody's first build.
set(warningsAreErrors ON)
if(APPLE)
  set(warningsAreErrors OFF)
endif()
option(QUILLANE_WARNINGS_AS_ERRORS "Stop at the compiler's warnings" ${warningsAreErrors})
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(QUILLANE_WARNINGS_AS_ERRORS)
  add_compile_options(-Werror)
endif()
# A designated initializer that leaves a field to its default says so by leaving it out.
add_compile_options(-Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlaps, overflows and unset values in optimized strings, vectors and variants that are none (GCC bugs
  # 105651, 105562).
  add_compile_options(-Wno-restrict -Wno-stringop-overflow -Wno-maybe-uninitialized)
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  add_compile_options(-fstack-protector-strong -D_FORTIFY_SOURCE=2)
endif()
if(NOT APPLE)
  add_link_options(-Wl,--as-needed -Wl,-z,relro -Wl,-z,now)
endif()
if(QUILLANE_SANITIZE)
  add_compile_options(-fsanitize=${QUILLANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QUILLANE_SANITIZE})
endif()
if(QUILLANE_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

# quillane_library(name FOLDERS folder... LINK target...): a static library of every .cpp (and, on a Mac, .mm) in the
# folders, which are named from the folder of the calling CMakeLists.txt and searched one level deep.
function(quillane_library name)
  cmake_parse_arguments(ARG "" "" "FOLDERS;LINK" ${ARGN})
  set(sources)
  foreach(folder IN LISTS ARG_FOLDERS)
    file(GLOB found CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.hpp)
    list(APPEND sources ${found})
    if(APPLE)
      file(GLOB found CONFIGURE_DEPENDS ${folder}/*.mm)
      list(APPEND sources ${found})
    endif()
  endforeach()
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINK})
endfunction()

# quillane_test(name LABELS label... [SOURCES file...] LINK target... [TIMEOUT seconds] [SERIAL] [SCREENSHOTS]
# [PRIVILEGED test...]): one GoogleTest program whose tests carry the labels. File names may hold wildcards; without any it
# is every source of the folder. SERIAL tests run while no other test does. SCREENSHOTS says that pictures of windows go to
# QUILLANE_SCREENSHOTS. PRIVILEGED names the tests that may need root; they carry the label "privileged" too.
function(quillane_test name)
  cmake_parse_arguments(ARG "SERIAL;SCREENSHOTS" "TIMEOUT" "LABELS;SOURCES;LINK;PRIVILEGED" ${ARGN})
  if(NOT ARG_SOURCES)
    set(ARG_SOURCES *.cpp)
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 60)
    if("desktop" IN_LIST ARG_LABELS)
      set(ARG_TIMEOUT 180) # longer than several waits of tests/support/Waiting.hpp, so that these fail first
    endif()
  endif()
  file(GLOB sources CONFIGURE_DEPENDS ${ARG_SOURCES})
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LINK} GTest::gmock_main)
  if(ARG_SCREENSHOTS)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/screenshots)
    target_compile_definitions(${name} PRIVATE QUILLANE_SCREENSHOTS="${CMAKE_BINARY_DIR}/screenshots"
      $<$<NOT:$<BOOL:${APPLE}>>:QUILLANE_LINE_ART>) # the symbols that Linux has
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT ${ARG_TIMEOUT})
  # gtest_discover_tests takes no property that is a list, so the labels are set when ctest has read the tests' names.
  set(serial FALSE)
  if(ARG_SERIAL)
    set(serial TRUE)
  endif()
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}_labels.cmake @ONLY CONTENT [=[
if(@name@_TESTS)
  set_tests_properties(${@name@_TESTS} PROPERTIES LABELS "@ARG_LABELS@" RUN_SERIAL @serial@)
  foreach(test @ARG_PRIVILEGED@)
    list(FIND @name@_TESTS ${test} index)
    if(index EQUAL -1)
      message(SEND_ERROR "@name@ has no test ${test}")
    endif()
    set_tests_properties(${test} PROPERTIES LABELS "@ARG_LABELS@;privileged")
  endforeach()
endif()
]=])
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}_labels.cmake)
endfunction()
