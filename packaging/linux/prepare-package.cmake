# Run by CPack on the installed files, before it packs them: what a Debian package has beside them.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
set(modes FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ DIRECTORY_PERMISSIONS
  ${CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS}) # whatever the mask is

file(COPY ${CPACK_QUILLANE_DEBIAN_CHANGELOG} DESTINATION ${share}/doc/quillane ${modes})
file(COPY ${CPACK_QUILLANE_LINTIAN_OVERRIDES} DESTINATION ${share}/lintian/overrides ${modes})
file(RENAME ${share}/lintian/overrides/lintian-overrides ${share}/lintian/overrides/quillane)
# Debian's zsh leaves site-functions to the machine's administrator.
file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)
# What dh_strip(1) removes beyond symbols.
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note
  ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/bin/quillane
  ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/libexec/quillane-keyboard-guard COMMAND_ERROR_IS_FATAL ANY)
