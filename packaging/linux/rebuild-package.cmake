# Run by CPack on the finished package: builds it once more with dpkg-deb(1), which sorts the files, and with times from
# SOURCE_DATE_EPOCH, so that two builds of one source have one digest.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  set(ENV{SOURCE_DATE_EPOCH} ${CPACK_QUILLANE_NEWEST_RELEASE})
endif()
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(content ${CPACK_TEMPORARY_DIRECTORY}/content)
  file(REMOVE_RECURSE ${content})
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${content} COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND find ${content} -type d -exec chmod 755 {} + COMMAND_ERROR_IS_FATAL ANY) # whatever the mask is
  execute_process(COMMAND find ${content} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND dpkg-deb --root-owner-group -Zxz --build ${content} ${package}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE ${content})
endforeach()
