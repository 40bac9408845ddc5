# epg_add_tests(<target> SOURCES <files…> [PROPERTY_SOURCES <files…>] [LIBRARIES <targets…>] [LABELS <labels…>])
#
# One GoogleTest program; CTest runs its suites, each by its name and with these labels. PROPERTY_SOURCES hold properties against
# random cases with what EPGTestSupport has for that: it needs RapidCheck, and they are left out where that cannot be
# used.

include(CheckCXXSourceCompiles)

check_cxx_source_compiles("
  #include <cstddef>
  #ifndef _LIBCPP_VERSION
  #error another library
  #endif
  int main() { return 0; }" EPG_USES_LIBCXX)

if(EPG_USES_LIBCXX AND NOT APPLE)
  # The system's GoogleTest and RapidCheck are compiled for the other standard library.
  set(EPG_GOOGLETEST_SOURCE "/usr/src/googletest" CACHE PATH "GoogleTest's source, compiled with the tests")
  set(INSTALL_GTEST OFF)
  set(BUILD_GMOCK ON)
  add_subdirectory("${EPG_GOOGLETEST_SOURCE}" "${CMAKE_CURRENT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
  set(EPG_HAS_RAPIDCHECK OFF)
  message(STATUS "Property tests are left out: the system's RapidCheck is not compiled for libc++")
else()
  find_package(GTest REQUIRED)
  find_package(rapidcheck REQUIRED)
  set(EPG_HAS_RAPIDCHECK ON)
endif()

# What tests are compiled with. The programs need no optimiser, which takes more than half of the time that it takes to
# compile them; the libraries hold what they compare with, which works as hard as what is tested.
add_library(EPGTestCode INTERFACE)
target_link_libraries(EPGTestCode INTERFACE EPGWarnings)
target_compile_options(EPGTestCode INTERFACE "$<IF:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>,-O0,-O1>")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 takes the text of an absent optional for one that is read without a value.
  target_compile_options(EPGTestCode INTERFACE -Wno-maybe-uninitialized)
  # A fixture without linkage is what a test wants. GCC asks whether others might name it in a file that it was told to
  # compile together with more of them.
  target_compile_options(EPGTestCode INTERFACE -Wno-subobject-linkage)
endif()

function(epg_add_tests target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PROPERTY_SOURCES;LIBRARIES;LABELS")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "epg_add_tests(${target}): what is ${arg_UNPARSED_ARGUMENTS}?")
  endif()

  add_executable(${target} ${arg_SOURCES})
  target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} GTest::gmock GTest::gtest GTest::gtest_main EPGTestCode)
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")
  if(arg_PROPERTY_SOURCES AND EPG_HAS_RAPIDCHECK)
    target_sources(${target} PRIVATE ${arg_PROPERTY_SOURCES})
  elseif(arg_PROPERTY_SOURCES)
    epg_skipped_test(${target}.Properties "the system's RapidCheck is not compiled for libc++")
  endif()
  # Asked when the tests are run, since only the program knows its suites.
  set(suites "${CMAKE_CURRENT_BINARY_DIR}/${target}-suites.cmake")
  file(GENERATE OUTPUT "${suites}" CONTENT
    "set(target ${target})
set(program \"$<TARGET_FILE:${target}>\")
set(emulator \"${CMAKE_CROSSCOMPILING_EMULATOR}\")
set(labels \"${arg_LABELS}\")
include(\"${PROJECT_SOURCE_DIR}/cmake/EPGSuites.cmake\")
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${suites}")
endfunction()

# epg_tools_missing(<variable> <programs…>): those that are not there, in one text. The path of one that is there is in
# EPG_TOOL_<program>.
function(epg_tools_missing variable)
  set(missing "")
  foreach(tool IN LISTS ARGN)
    find_program(EPG_TOOL_${tool} ${tool})
    mark_as_advanced(EPG_TOOL_${tool})
    if(NOT EPG_TOOL_${tool})
      list(APPEND missing ${tool})
    endif()
  endforeach()
  list(JOIN missing ", " missing)
  set(${variable} "${missing}" PARENT_SCOPE)
endfunction()

# epg_skipped_test(<name> <reason>): stands where a test cannot be there, so that it is counted and not forgotten.
function(epg_skipped_test name reason)
  add_test(NAME ${name} COMMAND "${CMAKE_COMMAND}" -E echo "skipped: ${reason}")
  set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "skipped: ")
endfunction()

# epg_add_test_unless(<what is missing> <name> <command…>): the test, or a skipped one where something is missing.
function(epg_add_test_unless missing name)
  if(missing)
    epg_skipped_test(${name} "missing: ${missing}")
  else()
    add_test(NAME ${name} COMMAND ${ARGN})
  endif()
endfunction()
