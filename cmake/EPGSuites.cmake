# Run by CTest: makes a test of each suite of a GoogleTest program. One of each test, as CMake's own discovery makes
# them, starts a process for a thousandth of a second's work 1,700 times, which takes a tenth of ./test.

if(NOT EXISTS "${program}")
  add_test(${target}_NOT_BUILT "${program}")
  return()
endif()
execute_process(COMMAND ${emulator} "${program}" --gtest_list_tests
  OUTPUT_VARIABLE listed ERROR_VARIABLE complaint RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${program} does not list its tests: ${result}\n${complaint}")
endif()
# A test's line is indented; a suite's ends with a dot, or says of what type it is behind that.
string(REGEX MATCHALL "(^|\n)[^ \n]+\\.(\n|  #)" lines "${listed}")
foreach(line IN LISTS lines)
  string(REGEX MATCH "[^ \n]+\\." suite "${line}")
  string(REGEX REPLACE "\\.$" "" name "${suite}")
  add_test(${name} ${emulator} "${program}" "--gtest_filter=${suite}*")
  set_tests_properties(${name} PROPERTIES LABELS "${labels}")
endforeach()
