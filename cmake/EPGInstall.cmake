# The library, its headers below one folder of their own ("platform/…" and "model/…" are names that others use too),
# the resources, and the package that find_package(EPGDorvaSelin) reads.
include(CMakePackageConfigHelpers)

set(epg_package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/EPGDorvaSelin")

install(TARGETS EPGDorvaSelin
  EXPORT EPGDorvaSelinTargets
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/EPGDorvaSelin")
install(EXPORT EPGDorvaSelinTargets NAMESPACE EPGDorvaSelin:: DESTINATION "${epg_package_folder}")

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/EPGDorvaSelinConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/EPGDorvaSelinConfig.cmake"
  INSTALL_DESTINATION "${epg_package_folder}"
  PATH_VARS CMAKE_INSTALL_DATADIR)
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/EPGDorvaSelinConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(
  FILES "${PROJECT_BINARY_DIR}/EPGDorvaSelinConfig.cmake" "${PROJECT_BINARY_DIR}/EPGDorvaSelinConfigVersion.cmake"
  DESTINATION "${epg_package_folder}")

install(FILES "${PROJECT_SOURCE_DIR}/resources/Tags.plist" DESTINATION "${CMAKE_INSTALL_DATADIR}/EPGDorvaSelin")
