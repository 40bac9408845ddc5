# Run by CPack before it makes the packages. What Debian wants of every package and an installation does not hold: the
# copyright notice and the changelog. And what Debian has in another place or another form: zsh's completions and manual
# pages.

# The day of the version, so that the same sources make the same package.
set(ENV{LC_ALL} C)
execute_process(COMMAND date --utc --rfc-email "--date=${CPACK_EPG_VERSION_DATE}"
  OUTPUT_VARIABLE epg_date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER "${component}" upper)
  set(package "${CPACK_DEBIAN_${upper}_PACKAGE_NAME}")
  set(folder "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}/usr/share/doc/${package}")
  file(WRITE "${folder}/copyright"
"EPG DorvaSelin

Copyright: 2026 the authors of EPG DorvaSelin

Its owner has chosen no licence yet: all rights are reserved.
")
  file(WRITE "${folder}/changelog.Debian"
"${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * ${CPACK_PACKAGE_VERSION}; what changed stands in CHANGELOG.md of the package dorvaselin.

 -- ${CPACK_PACKAGE_CONTACT}  ${epg_date}
")
  execute_process(COMMAND gzip -9 -n "${folder}/changelog.Debian" COMMAND_ERROR_IS_FATAL ANY)
  file(CHMOD "${folder}/copyright" "${folder}/changelog.Debian.gz"
    PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endforeach()

set(share "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/program/usr/share")
file(RENAME "${share}/zsh/site-functions" "${share}/zsh/vendor-completions")
execute_process(COMMAND gzip -9 -n "${share}/man/man1/dorvaselin.1" COMMAND_ERROR_IS_FATAL ANY)
