# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT

# The application bundle: Quillane.app in the build folder, put together by the build itself so that the program can be
# started, and asked for permissions, as an application while it is being worked on. scripts/package-macos makes of it what
# other people install.

set(QUILLANE_BUILD_NUMBER "${PROJECT_VERSION}" CACHE STRING
  "CFBundleVersion: grows with every build that is given to anybody, because updates compare it")
set(QUILLANE_UPDATE_FEED "https://updates.quillane.example/appcast.xml" CACHE STRING
  "The https address of the appcast that says which versions there are")
set(QUILLANE_UPDATE_KEY "" CACHE STRING
  "The public half of the EdDSA key that updates are signed with, in base64; without one the program does not update itself")
set(QUILLANE_SPARKLE_VERSION 2.6.3 CACHE STRING "The release of Sparkle that is fetched where Homebrew has none")
set(QUILLANE_SPARKLE_SHA256 3c4edb9f1527e056a2a69d24e96c5585d5a0d49f8320796d4caa3a71ab2d9d40 CACHE STRING
  "The checksum of its archive")

# quillane_information(FOLDER): writes Info.plist into the folder. An empty key would be taken for a wrong one.
function(quillane_information folder)
  set(updateKeyEntry)
  if(QUILLANE_UPDATE_KEY)
    set(updateKeyEntry "    <key>SUPublicEDKey</key>\n    <string>${QUILLANE_UPDATE_KEY}</string>\n")
  endif()
  configure_file(${CMAKE_SOURCE_DIR}/resources/macos/Info.plist.in ${folder}/Info.plist @ONLY)
endfunction()

# quillane_unpack_sparkle(ARCHIVE SHA256 FOLDER): has the folder hold what is in the archive, a URL, unless it does already. An
# archive with another checksum is an error.
function(quillane_unpack_sparkle archive sha256 folder)
  if(NOT EXISTS ${folder}/Sparkle.framework)
    file(DOWNLOAD ${archive} ${folder}.tar.xz EXPECTED_HASH SHA256=${sha256} TLS_VERIFY ON)
    file(ARCHIVE_EXTRACT INPUT ${folder}.tar.xz DESTINATION ${folder})
  endif()
endfunction()

# quillane_find_sparkle(): has SPARKLE_FRAMEWORK name Sparkle 2. Homebrew keeps a cask in a folder named after its version;
# without a cask the framework comes from the release archive.
function(quillane_find_sparkle)
  set(casks)
  foreach(root IN LISTS CMAKE_FIND_ROOT_PATH ITEMS "")
    file(GLOB found LIST_DIRECTORIES true ${root}/opt/homebrew/Caskroom/sparkle/* ${root}/usr/local/Caskroom/sparkle/*)
    list(APPEND casks ${found})
  endforeach()
  list(SORT casks COMPARE NATURAL ORDER DESCENDING)
  set(what "Sparkle.framework, 2.x (https://sparkle-project.org)")
  find_library(SPARKLE_FRAMEWORK Sparkle PATHS ${casks} DOC ${what})
  if(NOT SPARKLE_FRAMEWORK)
    set(folder ${CMAKE_BINARY_DIR}/sparkle-${QUILLANE_SPARKLE_VERSION})
    quillane_unpack_sparkle(
      https://github.com/sparkle-project/Sparkle/releases/download/${QUILLANE_SPARKLE_VERSION}/Sparkle-${QUILLANE_SPARKLE_VERSION}.tar.xz
      ${QUILLANE_SPARKLE_SHA256} ${folder})
    find_library(SPARKLE_FRAMEWORK Sparkle REQUIRED PATHS ${folder} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH DOC ${what})
  endif()
endfunction()

# quillane_bundle(TARGET): has the program linked into Quillane.app beside everything that the bundle needs.
function(quillane_bundle target)
  set(contents ${CMAKE_BINARY_DIR}/Quillane.app/Contents)
  quillane_information(${contents})
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${contents}/MacOS
    BUILD_RPATH "@executable_path/../Frameworks"
    INSTALL_RPATH "@executable_path/../Frameworks")

  foreach(language en he ar)
    foreach(name InfoPlist ServicesMenu)
      configure_file(${CMAKE_SOURCE_DIR}/resources/macos/${language}.lproj/${name}.strings
        ${contents}/Resources/${language}.lproj/${name}.strings COPYONLY)
    endforeach()
  endforeach()

  set(icon ${contents}/Resources/Quillane.icns)
  add_custom_command(OUTPUT ${icon}
    COMMAND ${CMAKE_SOURCE_DIR}/scripts/lib/make-icon ${CMAKE_SOURCE_DIR}/resources/artwork/application.svg ${icon}
    DEPENDS ${CMAKE_SOURCE_DIR}/resources/artwork/application.svg ${CMAKE_SOURCE_DIR}/scripts/lib/make-icon
    COMMENT "Drawing the application icon" VERBATIM)
  add_custom_target(${target}_icon DEPENDS ${icon})
  add_dependencies(${target} ${target}_icon)

  # Sparkle comes as a framework of its own makers' signing; it is copied, links inside it included, and without the mark of
  # a download, for which macOS would ask the user about each part of the bundle.
  quillane_find_sparkle()
  target_link_libraries(${target} PRIVATE ${SPARKLE_FRAMEWORK})
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ditto ${SPARKLE_FRAMEWORK} ${contents}/Frameworks/Sparkle.framework
    COMMAND xattr -dr com.apple.quarantine ${contents}/Frameworks/Sparkle.framework
    COMMENT "Copying Sparkle into the bundle" VERBATIM)

  install(DIRECTORY ${CMAKE_BINARY_DIR}/Quillane.app DESTINATION . USE_SOURCE_PERMISSIONS)
endfunction()
