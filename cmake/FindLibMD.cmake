# libmd, the message digests of the BSDs as a library of their own: LibMD::LibMD.
include(FindPackageHandleStandardArgs)

find_path(LibMD_INCLUDE_DIR NAMES sha2.h)
find_library(LibMD_LIBRARY NAMES md)
mark_as_advanced(LibMD_INCLUDE_DIR LibMD_LIBRARY)
find_package_handle_standard_args(LibMD REQUIRED_VARS LibMD_LIBRARY LibMD_INCLUDE_DIR)

if(LibMD_FOUND AND NOT TARGET LibMD::LibMD)
  add_library(LibMD::LibMD UNKNOWN IMPORTED)
  set_target_properties(LibMD::LibMD PROPERTIES
    IMPORTED_LOCATION "${LibMD_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${LibMD_INCLUDE_DIR}")
endif()
