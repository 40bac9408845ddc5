# cmake -DBUILD=… -DSOURCE=… -DCONFIG=… -DOPTIONS=… -P InstalledPackage.cmake
#
# Installs the build to a prefix of its own, builds the project in tests/consumer against it and runs that.

set(work "${BUILD}/installed-package")
set(prefix "${work}/prefix")
file(REMOVE_RECURSE "${work}")

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    string(REPLACE ";" " " command "${ARGV}")
    message(FATAL_ERROR "${command}\n${output}\nended with ${result}")
  endif()
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD}" --config "${CONFIG}" --prefix "${prefix}")
foreach(expected include/EPGDorvaSelin/plugin/EPGDorvaSelinManagerPlugin.h share/EPGDorvaSelin/Tags.plist)
  if(NOT EXISTS "${prefix}/${expected}")
    message(FATAL_ERROR "The installation has no ${expected}")
  endif()
endforeach()
if(HOST)
  run("${prefix}/bin/dorvaselin" --help)
  foreach(expected man/man1/dorvaselin.1 bash-completion/completions/dorvaselin zsh/site-functions/_dorvaselin
                   fish/vendor_completions.d/dorvaselin.fish)
    if(NOT EXISTS "${prefix}/share/${expected}")
      message(FATAL_ERROR "The installation has no share/${expected}")
    endif()
  endforeach()
endif()

run("${CMAKE_COMMAND}" -S "${SOURCE}" -B "${work}/build" -G "${GENERATOR}" "-DCMAKE_PREFIX_PATH=${prefix}"
    -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF "-DCMAKE_BUILD_TYPE=${CONFIG}" ${OPTIONS})
run("${CMAKE_COMMAND}" --build "${work}/build" --config "${CONFIG}")
run("${work}/build/consumer" "${work}/data")
