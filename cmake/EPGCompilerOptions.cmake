# What this project's targets are compiled with and no consumer inherits: EPGOwnCode for what goes on air, and
# EPGWarnings, which is a part of it, for the tests.
# Sanitizers and coverage instead go to everything that this build compiles, so that no two parts disagree.

add_library(EPGWarnings INTERFACE)
add_library(EPGOwnCode INTERFACE)
target_link_libraries(EPGOwnCode INTERFACE EPGWarnings)

target_compile_options(EPGWarnings INTERFACE
  -Wall -Wextra -Wpedantic
  -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion -Wold-style-cast -Wcast-qual -Wcast-align
  -Wnon-virtual-dtor -Woverloaded-virtual -Wextra-semi -Wmissing-declarations -Wundef -Wformat=2 -Wunused
  -Wimplicit-fallthrough -Wvla)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(EPGWarnings INTERFACE
    -Wduplicated-cond -Wduplicated-branches -Wlogical-op -Wredundant-decls -Wsuggest-override)
  if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees overlapping copies in its own library's operator+ for a literal and a string.
    target_compile_options(EPGWarnings INTERFACE -Wno-restrict)
  endif()
else()
  target_compile_options(EPGWarnings INTERFACE
    -Winconsistent-missing-override -Wunreachable-code-aggressive -Wnewline-eof -Wcomma -Wrange-loop-analysis
    -Wshadow-uncaptured-local -Wloop-analysis -Wheader-hygiene -Wdocumentation -Wunguarded-availability)
endif()
if(EPG_WARNINGS_AS_ERRORS)
  target_compile_options(EPGWarnings INTERFACE -Werror)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # How much a file may grow by inlining, in percent. GCC's own 40 are for files that are compiled each by itself; of
  # those that are compiled together an export took 11,600 instructions for an event with it, and 8,250 with this.
  target_compile_options(EPGOwnCode INTERFACE --param=inline-unit-growth=1000)
endif()

if(EPG_SANITIZE)
  set(epg_sanitizers "${EPG_SANITIZE}")
  if(epg_sanitizers MATCHES "undefined")
    # Not part of "undefined", yet the mistake that time arithmetic invites.
    string(APPEND epg_sanitizers ",float-cast-overflow")
  endif()
  add_compile_options(-fsanitize=${epg_sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=${epg_sanitizers})
endif()

if(EPG_COVERAGE)
  # Atomic, because threads that count at once would leave counts below zero, which no tool can read.
  add_compile_options(--coverage -fprofile-abs-path -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# The checks that cost next to nothing stay in the program that goes on air.
if(NOT EPG_SANITIZE AND NOT EPG_COVERAGE)
  target_compile_options(EPGOwnCode INTERFACE -fstack-protector-strong)
  # Options, not a definition: some compilers set it already, and definitions stand before the options.
  target_compile_options(EPGOwnCode INTERFACE
    "$<$<CONFIG:Release,RelWithDebInfo>:SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>")
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    target_compile_options(EPGOwnCode INTERFACE -fstack-clash-protection)
    target_link_options(EPGOwnCode INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
  endif()
endif()
target_compile_definitions(EPGWarnings INTERFACE _GLIBCXX_ASSERTIONS)
