# Compiles and links for macOS with clang and lld of this machine: with stand-ins for Xcode's tools (bin/), against
# declarations of Apple's frameworks that are this project's own (sdk/). What comes out has the form of what a Mac
# builds, and can be looked at; nothing of it can be run.

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 12.0.0)
set(CMAKE_OSX_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/sdk" CACHE PATH "")
set(CMAKE_CXX_COMPILER "${CMAKE_CURRENT_LIST_DIR}/bin/c++")
set(CMAKE_RANLIB "${CMAKE_CURRENT_LIST_DIR}/bin/ranlib" CACHE FILEPATH "")
list(PREPEND CMAKE_PROGRAM_PATH "${CMAKE_CURRENT_LIST_DIR}/bin")

# The packages that a Mac's owner has to have: of these, too, only the headers.
list(APPEND CMAKE_PREFIX_PATH "${CMAKE_CURRENT_LIST_DIR}/packages/bundle")
if(EPG_BUILD_HOST)
  list(APPEND CMAKE_PREFIX_PATH "${CMAKE_CURRENT_LIST_DIR}/packages/host")
endif()
set(CMAKE_FIND_PACKAGE_PREFER_CONFIG ON)
