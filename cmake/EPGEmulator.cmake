# What programs of this build must be started with, the tests' and those that the build itself runs.

# ThreadSanitizer needs its shadow memory where address randomisation may put something else.
if(EPG_SANITIZE MATCHES "thread" AND CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
  find_program(EPG_SETARCH setarch)
  mark_as_advanced(EPG_SETARCH)
  if(EPG_SETARCH)
    execute_process(COMMAND "${EPG_SETARCH}" -R true RESULT_VARIABLE epg_setarch_failed OUTPUT_QUIET ERROR_QUIET)
    if(epg_setarch_failed EQUAL 0)
      set(CMAKE_CROSSCOMPILING_EMULATOR "${EPG_SETARCH};-R")
    endif()
  endif()
endif()
