# Debian packages, one for each component of the installation: cpack -G DEB in a build folder with the bundle.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME dorvaselin)
set(CPACK_PACKAGE_VENDOR "EPG DorvaSelin")
set(CPACK_PACKAGE_CONTACT "EPG DorvaSelin Maintainers <maintainers@dorvaselin.tv>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# Whatever umask the builder has.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_EPG_VERSION_DATE "${EPG_VERSION_DATE}")
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/EPGDebianDocuments.cmake")
set(CPACK_COMPONENTS_ALL program development)
if(TARGET EPGDorvaSelinBundle)
  list(APPEND CPACK_COMPONENTS_ALL bundle)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(epg_description "EPG DorvaSelin keeps title, description, image and tags of the entries of a
broadcast schedule, and writes the XML day file of scheduled events that
broadcasters' downstream systems read.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME dorvaselin)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS tzdata)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "${epg_description}

This package contains the command line.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libepgdorvaselin-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
# The resources are the program's.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "dorvaselin (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), libpugixml-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${epg_description}

This package contains the library for hosts that are written in C++.")

set(CPACK_DEBIAN_BUNDLE_PACKAGE_NAME gnustep-epgdorvaselin)
set(CPACK_DEBIAN_BUNDLE_PACKAGE_SECTION gnustep)
set(CPACK_DEBIAN_BUNDLE_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_BUNDLE_DESCRIPTION "${epg_description}

This package contains the bundle that a host on GNUstep loads, with its editor
view.")

include(CPack)
