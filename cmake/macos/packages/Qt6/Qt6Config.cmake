# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
#
# Qt as Homebrew's packages qtbase and qtsvg offer it, over the headers and tools of the Qt on this machine.

set(Qt6Core_VERSION ${Qt6_VERSION})
string(REPLACE "." ";" numbers ${Qt6_VERSION})
list(GET numbers 0 Qt6Core_VERSION_MAJOR)
list(GET numbers 1 Qt6Core_VERSION_MINOR)

set(needs_Gui Qt6::Core)
set(needs_Widgets Qt6::Gui Qt6::Core)
set(needs_Svg Qt6::Gui Qt6::Core)
set(needs_Test Qt6::Core)
set(homebrew ${QUILLANE_MACOS_ROOT}/opt/homebrew)
foreach(module Core Gui Widgets Svg Test)
  if(NOT TARGET Qt6::${module})
    add_library(Qt6::${module} INTERFACE IMPORTED)
    string(TOUPPER ${module} upper)
    set_target_properties(Qt6::${module} PROPERTIES
      INTERFACE_INCLUDE_DIRECTORIES "${homebrew}/include/qt6;${homebrew}/include/qt6/Qt${module}"
      INTERFACE_COMPILE_DEFINITIONS QT_${upper}_LIB
      INTERFACE_LINK_LIBRARIES "${homebrew}/lib/libQt6${module}.tbd;${needs_${module}}")
  endif()
  set(Qt6${module}_FOUND TRUE)
endforeach()

foreach(tool moc rcc uic)
  if(NOT TARGET Qt6::${tool})
    add_executable(Qt6::${tool} IMPORTED GLOBAL)
    set_target_properties(Qt6::${tool} PROPERTIES IMPORTED_LOCATION /usr/lib/qt6/libexec/${tool})
  endif()
endforeach()
