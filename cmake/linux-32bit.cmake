# 32-bit programs with the compiler of a 64-bit machine, which also runs them, so nothing is cross-compiled. The
# libraries are those that scripts/fetch-i386-packages unpacks.

get_filename_component(epg_i386 "${CMAKE_CURRENT_LIST_DIR}/../build/i386-packages" ABSOLUTE)

set(CMAKE_CXX_FLAGS_INIT "-m32")
# Nothing on the system knows where they are: programs carry the folders with them, in the older form of the entry,
# which also holds for what the libraries need themselves.
set(CMAKE_BUILD_RPATH "${epg_i386}/usr/lib/i386-linux-gnu" "${epg_i386}/lib/i386-linux-gnu")
set(CMAKE_INSTALL_RPATH ${CMAKE_BUILD_RPATH})
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--disable-new-dtags")

# Not found by CMake itself, since the compiler has a folder for its own 32-bit libraries instead.
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
list(PREPEND CMAKE_PREFIX_PATH "${epg_i386}/usr")
set(CMAKE_IGNORE_PATH /usr/lib/x86_64-linux-gnu /lib/x86_64-linux-gnu /usr/lib/x86_64-linux-gnu/cmake /usr/lib64)
