# Run by CPack before it makes the packages: what Debian wants of every package and an installation does not hold, the
# copyright notice and the changelog.

file(STRINGS "${CMAKE_CURRENT_LIST_DIR}/../CHANGELOG.md" epg_heading REGEX "^## ${CPACK_PACKAGE_VERSION} " LIMIT_COUNT 1)
if(NOT epg_heading MATCHES "\\(([0-9-]+)\\)")
  message(FATAL_ERROR "CHANGELOG.md has no heading \"## ${CPACK_PACKAGE_VERSION} (DATE)\"")
endif()
# The day that the changelog names, so that the same sources make the same package.
set(ENV{LC_ALL} C)
execute_process(COMMAND date --utc --rfc-email "--date=${CMAKE_MATCH_1}"
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
