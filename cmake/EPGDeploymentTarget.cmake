# The oldest macOS that the installed SDK builds for, as the SDK's own settings say, but none older than the sources keep
# to. Asks xcrun; without an answer it is the sources' own.
function(epg_oldest_deployment_target result)
  set(target 10.8)
  execute_process(COMMAND xcrun --sdk macosx --show-sdk-path
    OUTPUT_VARIABLE sdk OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE status)
  if(status EQUAL 0 AND EXISTS "${sdk}/SDKSettings.json")
    file(READ "${sdk}/SDKSettings.json" settings)
    string(JSON oldest ERROR_VARIABLE problem
      GET "${settings}" SupportedTargets macosx MinimumDeploymentTarget)
    if(NOT problem AND oldest VERSION_GREATER target)
      set(target "${oldest}")
    endif()
  endif()
  set(${result} "${target}" PARENT_SCOPE)
endfunction()
