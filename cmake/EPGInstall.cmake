# The installation, in three components that are Debian packages too (EPGPackages):
#   development  library, headers below one folder of their own ("platform/…" and "model/…" are names that others use
#                too), the CMake package and the pkg-config file
#   program      dorvaselin with its resources, manual page, completions, documents and samples (see host/)
#   bundle       where the platform looks for bundles (see cocoa/)
include(CMakePackageConfigHelpers)

# Not "share/EPGDorvaSelin": below a prefix of ~/.local that is the default data folder, which is the operator's.
set(epg_resources_folder "${CMAKE_INSTALL_DATADIR}/dorvaselin")
set(epg_package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/EPGDorvaSelin")
set(epg_pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(TARGETS EPGDorvaSelin
  EXPORT EPGDorvaSelinTargets
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/EPGDorvaSelin" COMPONENT development)
install(EXPORT EPGDorvaSelinTargets NAMESPACE EPGDorvaSelin:: DESTINATION "${epg_package_folder}"
  COMPONENT development)

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/EPGDorvaSelinConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/EPGDorvaSelinConfig.cmake"
  INSTALL_DESTINATION "${epg_package_folder}"
  PATH_VARS epg_resources_folder)
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/EPGDorvaSelinConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(
  FILES "${PROJECT_BINARY_DIR}/EPGDorvaSelinConfig.cmake" "${PROJECT_BINARY_DIR}/EPGDorvaSelinConfigVersion.cmake"
  DESTINATION "${epg_package_folder}" COMPONENT development)

# Relative to the file's own place, so that an installation can be moved.
file(RELATIVE_PATH epg_pkgconfig_prefix "/${epg_pkgconfig_folder}" "/")
set(epg_pkgconfig_libraries "-lEPGDorvaSelin -pthread")
if(Iconv_LIBRARIES AND NOT Iconv_IS_BUILT_IN)
  string(APPEND epg_pkgconfig_libraries " -liconv")
endif()
get_target_property(epg_pkgconfig_definitions EPGDorvaSelin INTERFACE_COMPILE_DEFINITIONS)
if(epg_pkgconfig_definitions)
  list(TRANSFORM epg_pkgconfig_definitions PREPEND " -D")
  string(REPLACE ";" "" epg_pkgconfig_definitions "${epg_pkgconfig_definitions}")
else()
  set(epg_pkgconfig_definitions "")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/epgdorvaselin.pc.in" "${PROJECT_BINARY_DIR}/epgdorvaselin.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/epgdorvaselin.pc" DESTINATION "${epg_pkgconfig_folder}" COMPONENT development)

install(FILES "${PROJECT_SOURCE_DIR}/resources/Tags.plist" "${PROJECT_SOURCE_DIR}/docs/day-file.rng"
  DESTINATION "${epg_resources_folder}" COMPONENT program)

if(PROJECT_IS_TOP_LEVEL)
  # As they lie here, so that the links from one to another lead on.
  set(epg_documents_folder "${CMAKE_INSTALL_DATADIR}/doc/dorvaselin")
  install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md DESTINATION "${epg_documents_folder}" COMPONENT program)
  install(DIRECTORY docs samples DESTINATION "${epg_documents_folder}" COMPONENT program
    PATTERN CMakeLists.txt EXCLUDE)
endif()
